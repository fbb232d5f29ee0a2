#include "foundation/global.h"

#include <algorithm>
#include <array>
#include <memory>

#include "foundation/failures.h"
#include "platform/component_runtime.h"

namespace global {

std::string AddInName;
host::ShapeManager ShapeManager;
bool ToolImportRunning = false;
bool OrientationRestorePending = false;

namespace {

const host::Application* the_application = nullptr;
std::unique_ptr<clsIniFile> the_text_reader;

// By the host's language number; every other number is English.
constexpr std::array<const char*, 13> language_codes{"Eng", "Fre", "Ita", "Spa", "Ger", "Jap", "ChT",
                                                     "ChP", "Tur", "Kor", "Pol", "Cze", "Swe"};

constexpr std::array<std::int32_t, 7> lathe_styles{16, 17, 18, 19, 22, 23, 24};

}  // namespace

const host::Application& Application() {
  if (the_application == nullptr) throw automation::Failure(automation::Error::object_not_set);
  return *the_application;
}

void lend_application(const host::Application* application) noexcept {
  the_application = application;
}

bool is_lent(const host::Application& application) noexcept {
  return the_application == &application;
}

clsIniFile& text_reader() {
  if (!the_text_reader) the_text_reader = std::make_unique<clsIniFile>();
  return *the_text_reader;
}

void release_text_reader() noexcept {
  the_text_reader.reset();
}

std::string GetTextFileName() {
  const std::int32_t language = Application().Configuration().Language();
  const bool known = language >= 0 && language < static_cast<std::int32_t>(language_codes.size());
  const char* code = language_codes[known ? static_cast<std::size_t>(language) : 0];
  return platform::component_folder() + "\\" + AddInName + code + ".txt";
}

std::string text(std::string_view section, std::string_view key, std::string_view default_text) {
  clsIniFile& reader = text_reader();
  reader.FileName(GetTextFileName());
  reader.SectionName(std::string(section));
  return reader.GetString(std::string(key), std::string(default_text));
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
  const bool blank = given.find_first_not_of(' ') == given.npos;
  if (!blank && given != "0") return std::string(given);
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

}  // namespace global
