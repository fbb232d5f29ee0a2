#pragma once

#include <string>
#include <vector>

/// How the program and its system get on.
namespace deskhost {

/// Puts the standard files and what else the program starts with in order, and gives its arguments in UTF-8,
/// without the program's name. Message boxes are closed and reported from here on where nobody is there to
/// close them.
std::vector<std::string> start_program(int argc, char** argv);

bool errors_go_to_a_terminal();

}  // namespace deskhost
