#include <windows.h>

#include "deskhost/system/write_protection.h"

namespace deskhost {

bool is_write_protected(const std::filesystem::path& file) {
  const DWORD attributes = GetFileAttributesW(file.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

}  // namespace deskhost
