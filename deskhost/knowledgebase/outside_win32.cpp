#include <windows.h>

#include <filesystem>

#include "automation/failure.h"
#include "deskhost/knowledgebase/outside.h"
#include "deskhost/system/file_path.h"

namespace deskhost {
namespace {

using UnixFileName = char*(CDECL*)(const wchar_t*);

// Where this Windows is one inside another system, its ODBC hands everything on to the drivers outside. They
// know files by the names outside.
UnixFileName outside_names() {
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
  return reinterpret_cast<UnixFileName>(reinterpret_cast<void*>(found));
}

}  // namespace

std::string make_temporary_file() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  wchar_t file[MAX_PATH] = {};
  // A connection string can't hold every name.
  const bool is_usable = !error && folder.native().find_first_of(L";{}") == std::wstring::npos;
  if (!is_usable || GetTempFileNameW(folder.c_str(), L"dkb", 0, file) == 0)
    throw automation::Failure("no temporary knowledge base can be made in \"" + name_of(folder) + "\"");
  return name_of(file);
}

std::string sqlite_connection_string(const std::string& file, const std::string& how) {
  const auto named = [&](const std::string& name) {
    return how.empty() ? name : name_with_parameters(name, how);
  };
  const UnixFileName outside_name = outside_names();
  if (outside_name == nullptr) return "Driver=SQLite3 ODBC Driver;Database=" + named(file);
  char* const name = outside_name(std::filesystem::absolute(path_of(file)).c_str());
  // no name where the folder is missing, and then there isn't one of that name outside either
  const std::string database = name != nullptr ? name : path_of(file).generic_string();
  if (name != nullptr) HeapFree(GetProcessHeap(), 0, name);
  return "Driver=SQLite3;Database=" + named(database);
}

}  // namespace deskhost
