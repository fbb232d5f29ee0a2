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
  [[nodiscard]] std::string file(const std::string& name) const { return (folder_ / name).string(); }
  /// The text of the settings file, without its section line.
  void settings(const std::string& text) const;
  /// What a program of the shop does, as a shell script.
  void program(const std::string& name, const std::string& script) const;
  /// Keeps the present knowledge base for `reset`.
  void keep_knowledge_base() const;
  void forget_knowledge_base() const;
  [[nodiscard]] std::string component() const { return file("addin/" + component_name_); }

 private:
  std::filesystem::path folder_;
  std::string component_name_;
};

inline constexpr const char* exporter = "programs/QV-ToolExport.exe";
inline constexpr const char* list_maker = "programs/QVMakeList.exe";
inline constexpr const char* export_file = "exchange/QV-Esprit-Export.csv";
inline constexpr const char* speeds_file = "exchange/QV-Esprit-KB-Integration.csv";
inline constexpr const char* list_file = "exchange/QVEspritList.tls";
inline constexpr const char* knowledge_base_file = "knowledge-base.db";

}  // namespace deskhost::check
