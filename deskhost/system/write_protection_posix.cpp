#include <sys/stat.h>
#include <unistd.h>

#include "deskhost/system/write_protection.h"

namespace deskhost {

bool is_write_protected(const std::filesystem::path& file) {
  struct stat status {};
  return stat(file.c_str(), &status) == 0 &&
         ((status.st_mode & 0222) == 0 || access(file.c_str(), W_OK) != 0);
}

}  // namespace deskhost
