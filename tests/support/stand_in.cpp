// Stands in for a program of a site: does what the file beside it says (system.h tells the form).

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support/own_call.h"

namespace {

// Not by the option to write over a file: on Windows the library doesn't.
void copy(const std::string& from, const std::string& to) {
  std::filesystem::remove(to);
  std::filesystem::copy_file(from, to);
}

void report(const std::vector<std::string>& arguments, const std::string& file) {
  std::ofstream out(file, std::ios::binary);
  for (const std::string& argument : arguments) out << '<' << argument << ">\n";
}

}  // namespace

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  const testing_support::OwnCall call = testing_support::own_call(argc, argv);
  fs::path todo = call.program;
  std::ifstream instructions(todo += ".todo");
  for (std::string line; std::getline(instructions, line);) {
    for (auto place = line.find("%1"); place != line.npos && !call.arguments.empty();
         place = line.find("%1")) {
      line.replace(place, 2, call.arguments.front());
    }
    std::istringstream words(line);
    std::string what, first, second;
    std::getline(words, what, '\t');
    std::getline(words, first, '\t');
    std::getline(words, second, '\t');
    if (what == "copy") copy(first, second);
    if (what == "report") report(call.arguments, first);
    if (what == "exit") return std::atoi(first.c_str());
    if (what == "die") std::raise(SIGTERM);
  }
  return 0;
}
