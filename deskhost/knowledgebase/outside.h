#pragma once

#include <string>

/// What a knowledge base in a file needs of the system.
namespace deskhost {

/// Makes an empty file in the folder for temporary ones, and gives its name. Throws Failure.
std::string make_temporary_file();

/// The connection string for a SQLite file.
std::string sqlite_connection_string(const std::string& file);

}  // namespace deskhost
