// Any bytes are a registry's file: it is refused, or what is printed of it reads back as the same.

#include "platform/registry_text.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto store = platform::registry_text::parse({reinterpret_cast<const char*>(data), size});
  if (!store) return 0;
  const std::string once = platform::registry_text::print(*store);
  const auto again = platform::registry_text::parse(once);
  if (!again || again->size() > store->size() || platform::registry_text::print(*again) != once) std::abort();
  return 0;
}
