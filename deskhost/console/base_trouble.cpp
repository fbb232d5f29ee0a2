#include "deskhost/console/base_trouble.h"

#include <array>
#include <filesystem>
#include <fstream>

#include "deskhost/knowledgebase/base.h"
#include "deskhost/system/file_path.h"

namespace deskhost {
namespace {

namespace fs = std::filesystem;

/// Whether a file begins as the database's files do, or is empty, which is one without tables.
bool looks_like_database(const fs::path& file) {
  constexpr std::string_view start = "SQLite format 3";
  std::array<char, start.size()> bytes{};
  std::ifstream in(file, std::ios::binary);
  in.read(bytes.data(), bytes.size());
  return !in.is_open() || in.gcount() == 0 ||
         start == std::string_view(bytes.data(), static_cast<std::size_t>(in.gcount()));
}

}  // namespace

void refuse_what_is_no_base(const std::string& source) {
  if (is_connection_string(source)) return;
  const fs::path file = path_of(source);
  std::error_code ignored;
  const std::string named = "\"" + source + "\" ";
  if (fs::is_regular_file(file, ignored)) {
    if (looks_like_database(file)) return;
    throw WrongUse(named + "isn't a knowledge base: it is a file of another kind",
                   "give a knowledge base; --kb makes one in a file that isn't there yet");
  }
  if (fs::exists(file, ignored))
    throw WrongUse(named + "is no file, and a knowledge base has to be one",
                   "give a file, not a folder, a device or a pipe");
  const fs::path folder = file.parent_path();
  if (!folder.empty() && !fs::is_directory(folder, ignored))
    throw WrongUse(named + "can't be there: there is no folder \"" + name_of(folder) + "\"",
                   "give a file in a folder that exists, or an ODBC connection string");
}

WrongUse trouble_with_base(const std::string& source, const automation::Failure& failure) {
  if (dynamic_cast<const DatabaseFailure*>(&failure) == nullptr)
    return {failure.what(), "give a knowledge base that can be used, or an ODBC connection string"};
  constexpr std::string_view mark = "Knowledge base: ";  // for those who don't know what failed
  const std::string_view words = failure.what();
  const std::string says =
      "; its driver says: " + std::string(words.substr(words.starts_with(mark) ? mark.size() : 0));
  // the string itself may hold a password
  if (is_connection_string(source))
    return {"the knowledge base of the connection string can't be used" + says,
            "check the names of driver and data source, the server, user and password, and the tables there"};
  std::error_code ignored;
  if (!fs::exists(path_of(source), ignored))
    return {"\"" + source + "\" can't be made" + says, "check the rights of its folder and the space there"};
  return {"\"" + source + "\" isn't a knowledge base, or can't be used as one" + says,
          "give a knowledge base with all its tables, and check the file's rights"};
}

}  // namespace deskhost
