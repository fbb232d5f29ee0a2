#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "automation/number.h"
#include "foundation/global.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "toollist/json_host.h"
#include "toollist/list_file.h"

namespace mQuorvexList {

inline std::string bytes_of(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// A folder for the exchange, a list maker that keeps a copy of what it was given, and the user's messages.
class ExportTest : public testing::Test {
 protected:
  ExportTest() {
    char name[] = "/tmp/toollist-XXXXXX";
    folder = mkdtemp(name);
    settings_file =
        std::filesystem::path(platform::native_path(platform::component_folder())) / "QVEsprit.cfg";
    setenv("QVMakeListPath", folder.c_str(), 1);
    setenv("QVEspritInstallPath", (folder.string() + "/").c_str(), 1);
    write(folder / "QVMakeList.exe", "#!/bin/sh\ncp \"$1\" \"$1.taken\"\n");
    std::filesystem::permissions(folder / "QVMakeList.exe", std::filesystem::perms::owner_all);
    std::filesystem::remove(settings_file);
    global::AddInName = "QVEsprit";
    platform::set_message_sink(
        [this](std::string_view text, std::string_view, platform::Icon) { messages.emplace_back(text); });
  }
  ~ExportTest() override {
    platform::set_message_sink({});
    global::lend_application(nullptr);
    global::release_text_reader();
    automation::set_decimal_sign('.');
    std::filesystem::remove(settings_file);
    std::filesystem::remove_all(folder);
  }

  static void write(const std::filesystem::path& file, std::string_view text) {
    std::ofstream(file, std::ios::binary) << text;
  }
  void lend(const json_host::Host& host) {
    application = host::Application(host.application);
    global::lend_application(&application);
  }
  /// What `action` fails with, empty for nothing.
  template <class Action>
  static std::string failure_of(Action&& action) {
    try {
      action();
      return {};
    } catch (const automation::Failure& failure) {
      return failure.what();
    }
  }
  [[nodiscard]] std::string list() const { return bytes_of(folder / "QVEspritList.tls"); }
  [[nodiscard]] bool list_maker_ran() const {
    return std::filesystem::exists(folder / "QVEspritList.tls.taken");
  }

  std::filesystem::path folder;
  std::filesystem::path settings_file;
  std::vector<std::string> messages;
  host::Application application;
};

}  // namespace mQuorvexList
