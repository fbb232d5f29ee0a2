#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "deskhost/check/runner.h"

namespace deskhost::check {

/// A shop of a check's own: the component with its settings and texts, both exchange files, the programs, the
/// models, the documents and the registry, in one folder to which the environment leads.
class Shop {
 public:
  explicit Shop(const Place& place);
  ~Shop();
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  /// Everything as it was when the shop was made; the knowledge base is as after an import.
  void reset();
  void write(const std::string& name, std::string_view bytes) const;
  [[nodiscard]] std::string read(const std::string& name) const;
  [[nodiscard]] std::filesystem::path path(const std::string& name) const { return folder_ / name; }
  [[nodiscard]] std::string file(const std::string& name) const;
  /// The text of the settings file, without its section line.
  void settings(const std::string& text) const;
  /// What a program of the shop does, as a script of make_program.
  void program(const std::string& name, const std::string& script) const;
  /// The registry is what its file holds.
  void take_up_registry() const;
  /// The tool list can't be written.
  void fill_disk();
  /// Keeps the present knowledge base for `reset`.
  void keep_knowledge_base() const;
  void forget_knowledge_base() const;
  /// What is to be loaded: empty for the registered component.
  [[nodiscard]] std::string component() const;

 private:
  std::filesystem::path folder_;
  std::filesystem::path component_name_;
  bool is_registered_;
  std::shared_ptr<void> full_disk_;
};

inline constexpr const char* connect_class = "QVEsprit.Connect";
inline constexpr const char* registry_file = "registry.reg";
inline constexpr const char* exporter = "programs/QV-ToolExport.exe";
inline constexpr const char* list_maker = "programs/QVMakeList.exe";
inline constexpr const char* export_file = "exchange/QV-Esprit-Export.csv";
inline constexpr const char* speeds_file = "exchange/QV-Esprit-KB-Integration.csv";
inline constexpr const char* list_file = "exchange/QVEspritList.tls";
inline constexpr const char* knowledge_base_file = "knowledge-base.db";

}  // namespace deskhost::check
