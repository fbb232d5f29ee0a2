#include <windows.h>

#include <filesystem>
#include <utility>

#include "automation/failure.h"
#include "platform/component_runtime.h"
#include "platform/win32/path_win32.h"
#include "platform/win32/text_win32.h"

namespace platform {
namespace {

ClassMaker& offered() {
  static ClassMaker maker;
  return maker;
}

// The file that this code was loaded from.
std::filesystem::path own_file() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&own_file), &module);
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) return name.substr(0, length);
    name.resize(name.size() * 2);
  }
}

}  // namespace

std::string component_folder() {
  return win32::without_separator(win32::utf8(own_file().parent_path().native()));
}

std::string component_name() {
  return win32::utf8(own_file().stem().native());
}

void offer_classes(ClassMaker maker) {
  offered() = std::move(maker);
}

automation::Ref create_object(std::string_view class_name) {
  // a copy: the maker may take the offer back
  if (const ClassMaker maker = offered()) {
    if (automation::Ref made = maker(class_name)) return made;
  }
  throw automation::Failure(automation::Error::cannot_create_object);
}

std::unique_ptr<Component> load_component(const std::string& file) {
  throw automation::Failure(file + ": components can't be loaded yet");
}

}  // namespace platform
