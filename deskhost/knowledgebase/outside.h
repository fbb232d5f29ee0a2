#pragma once

#include <string>

/// What a knowledge base in a file needs of the system.
namespace deskhost {

/// Makes an empty file in the folder for temporary ones, and gives its name. Throws Failure.
std::string make_temporary_file();

/// The connection string for a SQLite file; `how` ("?mode=ro") makes its name one with parameters.
std::string sqlite_connection_string(const std::string& file, const std::string& how = {});

/// "file:NAME?mode=ro", in which a name's own signs mean nothing.
std::string name_with_parameters(const std::string& file, const std::string& parameters);

}  // namespace deskhost
