#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace deskhost::check {

/// What the check's own shop needs of its system.

/// A program that does what a script says, a line each; names stand in single quotes.
///   copy FROM TO    half FROM TO (all but its end)    make FILE (empty)    folder NAME    fail    die
///   (killed)
void make_program(const std::filesystem::path& file, const std::string& script);
/// The exit status of such a program, where it is this one under another name.
std::optional<int> run_as_shop_program();

/// From here on the add-in has a registry to itself in this process, and it is empty; `file` is its place
/// where a registry is a file.
void have_own_registry(const std::filesystem::path& file);
/// It takes up what the file holds, as far as that makes sense; without a file it is empty again.
void refill_own_registry(const std::filesystem::path& file);

/// While the result lives, nothing can be written into the file.
std::shared_ptr<void> refuse_writes(const std::filesystem::path& file);

/// How many files are open, of this process or in the folder.
std::size_t open_files(const std::filesystem::path& folder);

}  // namespace deskhost::check
