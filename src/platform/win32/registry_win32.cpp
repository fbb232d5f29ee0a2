#include <windows.h>

#include "platform/registry.h"
#include "platform/text.h"

namespace platform {
namespace {

// The rights that a read asks for: query, set, create a sub key, enumerate, notify, link.
constexpr REGSAM rights_to_read = 63;

HKEY handle_of(RegistryRoot root) {
  // the system widens these numbers by their sign
  return reinterpret_cast<HKEY>(  // NOLINT(performance-no-int-to-ptr)
      static_cast<LONG_PTR>(static_cast<std::int32_t>(root)));
}

// A key of the registry that is closed at the end.
class OpenKey {
 public:
  OpenKey(RegistryRoot root, std::string_view key, REGSAM rights) {
    if (RegOpenKeyExA(handle_of(root), to_code_page(key).c_str(), 0, rights, &key_) != ERROR_SUCCESS)
      key_ = nullptr;
  }
  ~OpenKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  explicit operator bool() const { return key_ != nullptr; }
  [[nodiscard]] HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

bool is_one_text(std::string_view name) {
  return name.find('\0') == std::string_view::npos;
}

}  // namespace

std::optional<RegistryValue> registry_read(RegistryRoot root, std::string_view key, std::string_view name) {
  if (!is_one_text(key) || !is_one_text(name)) return std::nullopt;
  const OpenKey open(root, key, rights_to_read);
  const std::string value_name = to_code_page(name);
  RegistryValue value;
  DWORD kind = 0;
  DWORD size = 0;
  if (!open ||
      RegQueryValueExA(open.get(), value_name.c_str(), nullptr, &kind, nullptr, &size) != ERROR_SUCCESS)
    return std::nullopt;
  value.data.resize(size);
  if (RegQueryValueExA(open.get(), value_name.c_str(), nullptr, &kind,
                       reinterpret_cast<BYTE*>(value.data.data()), &size) != ERROR_SUCCESS)
    return std::nullopt;
  value.data.resize(size);
  value.kind = kind;
  return value;
}

bool registry_create_sub_key(RegistryRoot root, std::string_view parent, std::string_view name) {
  if (!is_one_text(parent) || !is_one_text(name)) return false;
  const OpenKey above(root, parent, KEY_CREATE_SUB_KEY);
  if (!above) return false;
  if (name.empty()) return true;
  HKEY made = nullptr;
  if (RegCreateKeyExA(above.get(), to_code_page(name).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_CREATE_SUB_KEY, nullptr, &made, nullptr) != ERROR_SUCCESS)
    return false;
  RegCloseKey(made);
  return true;
}

bool registry_write(RegistryRoot root, std::string_view key, std::string_view name,
                    const RegistryValue& value) {
  if (!is_one_text(key) || !is_one_text(name)) return false;
  const OpenKey open(root, key, KEY_SET_VALUE);
  return open && RegSetValueExA(open.get(), to_code_page(name).c_str(), 0, value.kind,
                                reinterpret_cast<const BYTE*>(value.data.data()),
                                static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS;
}

}  // namespace platform
