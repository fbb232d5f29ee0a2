#include <windows.h>

#include "deskhost/system/registered_class.h"

// windows.h has to come first
#include <objbase.h>

#include <fstream>

#include "automation/failure.h"
#include "deskhost/system/file_path.h"
#include "platform/win32/path_win32.h"

namespace deskhost {
namespace {

std::optional<std::wstring> class_id_of(const std::string& class_name) {
  CLSID id{};
  if (FAILED(CLSIDFromProgID(path_of(class_name).c_str(), &id))) return std::nullopt;
  constexpr int room = 40;
  wchar_t text[room] = {};
  StringFromGUID2(id, text, room);
  return text;
}

[[noreturn]] void fail(const std::filesystem::path& file) {
  throw automation::Failure("\"" + name_of(file) + "\" can't stand for the registered component: " +
                            platform::win32::failure_of(GetLastError()).what());
}

}  // namespace

std::optional<std::filesystem::path> registered_file(const std::string& class_name) {
  const std::optional<std::wstring> id = class_id_of(class_name);
  if (!id) return std::nullopt;
  const std::wstring key = L"CLSID\\" + *id + L"\\InprocServer32";
  DWORD size = 0;
  if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &size) !=
      ERROR_SUCCESS)
    return std::nullopt;
  std::wstring file(size / sizeof(wchar_t), L'\0');
  RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, file.data(), &size);
  return std::filesystem::path(file.c_str());
}

// An activation context: what its manifest tells of a class comes before the registry.
void register_here(const std::string& class_name, const std::filesystem::path& file) {
  const std::filesystem::path folder = file.parent_path();
  const std::filesystem::path manifest = folder / "registered.manifest";
  std::ofstream(manifest, std::ios::binary)
      << R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
         R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">)"
         R"(<assemblyIdentity type="win32" name="Deskhost.Registered" version="1.0.0.0"/>)"
      << "<file name=\"" << name_of(file.filename()) << "\"><comClass clsid=\""
      << name_of(class_id_of(class_name).value_or(L"")) << "\" progid=\"" << class_name
      << R"(" threadingModel="Apartment"/></file></assembly>)";
  ACTCTXW context{};
  context.cbSize = sizeof context;
  context.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
  context.lpSource = manifest.c_str();
  context.lpAssemblyDirectory = folder.c_str();
  const HANDLE made = CreateActCtxW(&context);
  ULONG_PTR cookie = 0;
  if (made == INVALID_HANDLE_VALUE || !ActivateActCtx(made, &cookie)) fail(file);
}

}  // namespace deskhost
