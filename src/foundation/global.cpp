#include "foundation/global.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "platform/component_runtime.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/per_thread.h"
#include "platform/process.h"
#include "platform/text.h"

namespace global {

namespace {

struct State {
  std::string add_in_name;
  host::ShapeManager shape_manager;
  bool tool_import_running = false;
  bool orientation_restore_pending = false;
  std::vector<const host::Application*> lent_applications;  // the last one counts
  std::unique_ptr<clsIniFile> text_reader;
};

State& state() {
  static platform::PerThread<State> states;
  return states.get();
}

// By the host's language number; every other number is English.
constexpr std::array<const char*, 13> language_codes{"Eng", "Fre", "Ita", "Spa", "Ger", "Jap", "ChT",
                                                     "ChP", "Tur", "Kor", "Pol", "Cze", "Swe"};

constexpr std::array<std::int32_t, 7> lathe_styles{16, 17, 18, 19, 22, 23, 24};

}  // namespace

std::string& AddInName() {
  return state().add_in_name;
}

host::ShapeManager& ShapeManager() {
  return state().shape_manager;
}

bool& ToolImportRunning() {
  return state().tool_import_running;
}

bool& OrientationRestorePending() {
  return state().orientation_restore_pending;
}

const host::Application& Application() {
  const std::vector<const host::Application*>& lent_applications = state().lent_applications;
  if (lent_applications.empty()) throw automation::Failure(automation::Error::object_not_set);
  return *lent_applications.back();
}

void lend_application(const host::Application& application) {
  take_application_back(application);
  state().lent_applications.push_back(&application);
}

void take_application_back(const host::Application& application) noexcept {
  std::erase(state().lent_applications, &application);
}

bool another_is_lent(const host::Application& application) noexcept {
  return std::ranges::any_of(state().lent_applications,
                             [&](const auto* lent) { return lent != &application; });
}

bool is_lent(const host::Application& application) noexcept {
  const std::vector<const host::Application*>& lent_applications = state().lent_applications;
  return !lent_applications.empty() && lent_applications.back() == &application;
}

clsIniFile& text_reader() {
  std::unique_ptr<clsIniFile>& reader = state().text_reader;
  if (!reader) reader = std::make_unique<clsIniFile>();
  return *reader;
}

void release_text_reader() noexcept {
  state().text_reader.reset();
}

std::string GetTextFileName() {
  const std::int32_t language = Application().Configuration().Language();
  const bool known = language >= 0 && language < static_cast<std::int32_t>(language_codes.size());
  const char* code = language_codes[known ? static_cast<std::size_t>(language) : 0];
  return platform::component_folder() + "\\" + AddInName() + code + ".txt";
}

std::string text(std::string_view section, std::string_view key, std::string_view default_text) {
  return open_texts(section, handed_on).GetString(std::string(key), std::string(default_text));
}

void open_settings() {
  clsIniFile& reader = text_reader();
  reader.FileName(platform::component_folder() + "\\QVEsprit.cfg");
  reader.SectionName("Default");
}

std::string setting(std::string_view key, std::string_view default_text) {
  open_settings();
  return text_reader().GetString(std::string(key), std::string(default_text));
}

std::string GetCfgValue(std::string_view key, std::string_view given, std::string_view default_text) {
  if (!platform::trimmed(given).empty() && given != "0") return std::string(given);
  return setting(key, default_text);
}

void show_message(std::string_view text, platform::Icon icon) {
  platform::message_box(text, "QVEsprit", icon);
}

host::CustomProperty GetCustomProperty(const host::Facade& object, std::string_view name, std::int32_t type) {
  host::CustomProperties properties;
  host::CustomProperty property;
  skip_failure([&] { properties = host::WithCustomProperties(object.ref()).CustomProperties(); });
  skip_failure([&] { property = properties.Item(name); });
  if (!property.is_nothing() && passes([&] { return property.Type() != type; })) {
    skip_failure([&] { properties.Remove(name); });
    property.release();
  }
  if (property.is_nothing()) {
    const automation::Value start = type == host::type_string ? automation::Value("") : automation::Value(0);
    skip_failure([&] { property = properties.Add(name, type, start); });
  }
  return property;
}

bool IsMillStyle(const host::Tool& tool) {
  const std::int32_t style = tool.Style();
  return style < 15 || style == 20 || style == 25;
}

bool is_lathe_style(std::int32_t style) noexcept {
  return std::ranges::find(lathe_styles, style) != lathe_styles.end();
}

bool is_lathe_style_text(std::string_view style) {
  return std::ranges::any_of(lathe_styles,
                             [&](std::int32_t number) { return style == std::to_string(number); });
}

std::string GetEnvPath(std::string_view variable) {
  std::string value = platform::environment(variable);
  const clsIniFile& reader = open_texts("MSG", handed_on);
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

double PI() {
  return 4 * std::atan(1.0);
}

}  // namespace global
