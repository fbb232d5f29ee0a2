#include "automation/failure.h"
#include "platform/files.h"
#include "platform/posix/path_posix.h"
#include "platform/profile.h"
#include "platform/profile_text.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;

std::string content_of(std::string_view path) {
  try {
    return read_file(path);
  } catch (const Failure&) {
    return {};  // to a reader a file that can't be read is one without entries
  }
}

// The content that a write starts from: nothing of a file that isn't there yet. Throws Failure for one that
// is there and can't be read, since a write would lose what it holds.
std::string content_to_change(std::string_view path) {
  try {
    return read_file(path);
  } catch (const Failure& failure) {
    if (failure.error() != Error::file_not_found) throw;
    return {};
  }
}

template <class Edit>
bool change_profile(std::string_view path, Edit edit) {
  if (path.empty()) return false;
  try {
    if (path == system_profile()) posix::make_folders(posix::settings_folder());
    const std::string old = content_to_change(path);
    const std::optional<std::string> changed = edit(old);
    if (changed && *changed != old) replace_file(path, *changed);
    return changed.has_value();
  } catch (const Failure&) {
    return false;
  }
}

}  // namespace

std::string private_profile_string(std::string_view section, std::string_view key,
                                   std::string_view default_text, std::size_t size, std::string_view path) {
  return profile_text::string_value(content_of(path), section, key, default_text, size);
}

std::int32_t private_profile_int(std::string_view section, std::string_view key, std::int32_t default_number,
                                 std::string_view path) {
  return profile_text::int_value(content_of(path), section, key, default_number);
}

std::string private_profile_section(std::string_view section, std::size_t size, std::string_view path) {
  return profile_text::section_entries(content_of(path), section, size);
}

bool write_private_profile_string(std::string_view section, std::string_view key,
                                  std::optional<std::string_view> value, std::string_view path) {
  return change_profile(
      path, [&](std::string_view text) { return profile_text::with_entry(text, section, key, value); });
}

bool write_private_profile_section(std::string_view section, std::string_view entries,
                                   std::string_view path) {
  return change_profile(
      path, [&](std::string_view text) { return profile_text::with_entries(text, section, entries); });
}

// Every write has reached the disk when it returns.
void flush_private_profile(std::string_view /*path*/) {}

std::string windows_directory() {
  return posix::addin_form(posix::settings_folder());
}

std::string system_profile() {
  const std::string folder = windows_directory();
  return folder.empty() ? std::string() : folder + "\\win.ini";
}

}  // namespace platform
