#include "automation/failure.h"
#include "platform/files.h"
#include "platform/profile.h"
#include "platform/profile_text.h"

namespace platform {
namespace {

std::string content_of(std::string_view path) {
  try {
    return read_file(path);
  } catch (const automation::Failure&) {
    return {};  // to a reader a file that can't be read is one without entries
  }
}

}  // namespace

std::string private_profile_string(std::string_view section, std::string_view key,
                                   std::string_view default_text, std::size_t size, std::string_view path) {
  return profile_text::string_value(content_of(path), section, key, default_text, size);
}

}  // namespace platform
