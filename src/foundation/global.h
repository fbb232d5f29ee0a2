#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/clsIniFile.h"
#include "foundation/failures.h"
#include "host/application.h"
#include "host/shape_manager.h"
#include "platform/message_box.h"

/// The state of the add-in and the small operations that its modules share. The state is the calling
/// thread's: a host's objects belong to one, and two hosts' threads may each have a connection of this
/// component.
namespace global {

/// "QVEsprit" from the connection on: the name of commands, menu entry and toolbar, and the stem of files.
std::string& AddInName();
/// Made at the connection, given up at the take-down.
host::ShapeManager& ShapeManager();
/// True while an import runs, so that its own changes to tools aren't taken for the user's.
bool& ToolImportRunning();
/// True while a modified tool waits for the next command-state event.
bool& OrientationRestorePending();

/// The host. Throws Failure (object not set) while the add-in isn't connected.
const host::Application& Application();
/// Lends a connection's reference to the modules, in place of one that was lent before; that one counts again
/// when it is taken back. The caller keeps the ownership.
void lend_application(const host::Application& application);
void take_application_back(const host::Application& application) noexcept;
/// Whether one of another connection is lent too.
bool another_is_lent(const host::Application& application) noexcept;
/// Whether the modules use that reference.
bool is_lent(const host::Application& application) noexcept;

/// The one reader of settings and texts, made on first use. Whoever reads sets FileName and SectionName
/// first.
clsIniFile& text_reader();
void release_text_reader() noexcept;

/// The language text file beside the add-in: AddInName, code of the host's language, ".txt". The language is
/// asked anew at every call.
std::string GetTextFileName();
/// Points the text reader at a section of the language text file: two statements, run in the caller's `zone`
/// (`skipped`, `handed_on`, or what it has of its own). The reader lasts to the next host call, in which a
/// connection may end.
template <class Zone>
clsIniFile& open_texts(std::string_view section, Zone&& zone) {
  zone([&] {
    const std::string file = GetTextFileName();
    text_reader().FileName(file);
  });
  zone([&] { text_reader().SectionName(std::string(section)); });
  return text_reader();
}
/// The text of a key in the language text file; an entry without a value gives an empty text.
std::string text(std::string_view section, std::string_view key, std::string_view default_text);
/// The setting of a key in section "Default" of QVEsprit.cfg, read from the file at every call.
std::string setting(std::string_view key, std::string_view default_text);
/// Points the text reader at section "Default" of QVEsprit.cfg.
void open_settings();
/// A value from an exchange file wins over the configuration, unless it is blank or exactly "0".
std::string GetCfgValue(std::string_view key, std::string_view given, std::string_view default_text);

/// Shows a message under the add-in's title.
void show_message(std::string_view text, platform::Icon icon = platform::Icon::none);

/// The custom property of that name and type (3 Long, 5 Double, 8 String), made with a start value of 0 or ""
/// where it is missing or of another type. Skips failures; a view of nothing if all failed.
host::CustomProperty GetCustomProperty(const host::Facade& object, std::string_view name, std::int32_t type);

/// A style below 15, 20 or 25: such a tool has its orientation in `Orientation`. Not the opposite of
/// `is_lathe_style`: 15 and 21 are neither.
bool IsMillStyle(const host::Tool& tool);
/// 16, 17, 18, 19, 22, 23, 24: such a tool has its orientation in `LatheToolOrientation`.
bool is_lathe_style(std::int32_t style) noexcept;
/// The same for the text of a style; "016" and " 16" are none.
bool is_lathe_style_text(std::string_view style);

/// The value of an environment variable; a message tells the user of one that has none. Points the text
/// reader at the language text file.
std::string GetEnvPath(std::string_view variable);
/// A file or folder of that path.
bool FileExists(std::string_view path);
/// Starts a program and waits until it has ended, without a time limit. Throws Failure where it can't start.
void ShellAndWait(std::string_view command_line, std::int32_t window_style);
/// A normal window with the focus.
inline constexpr std::int32_t window_normal = 1;

/// The path of a user model: the folder of QVEspritUserModelsPath, "\" and the file's name.
std::string user_model_path(std::string_view model_file);

/// The type of a machine setup parameter's value: 3 Long, 5 Double, 8 String. Total.
std::int32_t MachineParameterType(std::int32_t number) noexcept;
/// The value of a machine setup parameter in the type of its number; `index` counts the programs from 1.
/// Empty where the document has no such setup. A failure is told to the user and gives an empty value.
automation::Value GetMachineSetupParameter(const host::Document& document, std::int32_t number,
                                           const automation::Value& index);

/// 4 times the arctangent of 1.
double PI();

}  // namespace global
