#include "foundation/global.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/process.h"

namespace global {

std::string GetEnvPath(std::string_view variable) {
  std::string value = platform::environment(variable);
  clsIniFile& reader = text_reader();
  reader.FileName(GetTextFileName());
  reader.SectionName("MSG");
  if (value.empty()) {
    // Two words that were never spelled right; sites know the message by them.
    show_message("Enviorementvariable :" + std::string(variable) + reader.GetString("notSet", " not set!"));
  }
  return value;
}

bool FileExists(std::string_view path) {
  return platform::file_exists(path);
}

void ShellAndWait(std::string_view command_line, std::int32_t window_style) {
  platform::shell_and_wait(command_line, window_style);
}

std::string user_model_path(std::string_view model_file) {
  return GetEnvPath("QVEspritUserModelsPath") + "\\" + std::string(model_file);
}

}  // namespace global
