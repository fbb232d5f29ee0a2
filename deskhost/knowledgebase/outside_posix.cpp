#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "automation/failure.h"
#include "deskhost/knowledgebase/outside.h"

namespace deskhost {

std::string make_temporary_file() {
  std::error_code error;
  std::string file = (std::filesystem::temp_directory_path(error) / "deskhost-kb-XXXXXX").string();
  // A connection string can't hold every name.
  const bool is_usable = !error && file.find_first_of(";{}") == std::string::npos;
  const int descriptor = is_usable ? mkstemp(file.data()) : -1;
  if (descriptor < 0) {
    const char* const folder = std::getenv("TMPDIR");
    throw automation::Failure("no temporary knowledge base can be made; TMPDIR is " +
                              (folder ? "\"" + std::string(folder) + "\"" : "not set"));
  }
  close(descriptor);
  return file;
}

std::string sqlite_connection_string(const std::string& file, const std::string& how) {
  if (how.empty()) return "Driver=SQLite3;Database=" + file;
  return "Driver=SQLite3;Database=" + name_with_parameters(file, how);
}

}  // namespace deskhost
