// Runs a fuzz target once for every file of the folders that are named, without the fuzzer.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string bytes(std::istreambuf_iterator<char>(in), {});
      std::cout << entry.path().filename().string() << std::endl;  // flushed: a crash is the next thing seen
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++files;
    }
  }
  if (files == 0) std::cerr << "no seeds\n";
  return files == 0 ? 1 : 0;
}
