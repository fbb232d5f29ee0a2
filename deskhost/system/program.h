#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// How the program and its system get on.
namespace deskhost {

/// Puts the standard files and what else the program starts with in order, and gives its arguments in UTF-8,
/// without the program's name. Message boxes are closed and reported from here on where nobody is there to
/// close them. An interruption by the user removes what is left over and ends the program that runs; a second
/// one ends this program at once.
std::vector<std::string> start_program(int argc, char** argv);

bool errors_go_to_a_terminal();
/// Whether standard output goes to a terminal, and nobody asked for it without colours (NO_COLOR).
bool results_want_colour();

/// Whether standard output is a pipe whose reader has gone.
bool output_has_no_reader();

/// A program that was started, by its number, or 0: an interruption ends it too.
void set_running_program(long process);

/// The file that this program runs from.
std::filesystem::path own_program();

/// Gives `path` the content of this program, without copying where the system can do so.
void be_found_at(const std::filesystem::path& path);
/// The same with another file or folder.
void be_found_at(const std::filesystem::path& file, const std::filesystem::path& path);

/// Makes an empty folder for temporary things, with `name` in its own. Throws automation::Failure.
std::filesystem::path make_temporary_folder(const std::string& name = "deskhost");
/// The same, in memory where the system has such a place and nobody has told another one.
std::filesystem::path make_folder_in_memory(const std::string& name);

/// A variable of the environment, in this program and those that it starts; nothing takes it away.
std::optional<std::string> variable(const char* name);
void set_variable(const char* name, const std::optional<std::string>& value);

/// Holds a folder for one session of several; null where another one holds it.
std::shared_ptr<void> hold_folder(const std::filesystem::path& folder);

}  // namespace deskhost
