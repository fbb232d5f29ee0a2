#include "automation/failure.h"

#include <array>

namespace automation {
namespace {

struct Text {
  Error error;
  const char* text;
};

constexpr std::array<Text, 17> texts{{
    {Error::none, ""},
    {Error::overflow, "Overflow"},
    {Error::subscript_out_of_range, "Subscript out of range"},
    {Error::type_mismatch, "Type mismatch"},
    {Error::bad_file_name, "Bad file name or number"},
    {Error::file_not_found, "File not found"},
    {Error::path_not_found, "Path not found"},
    {Error::permission_denied, "Permission denied"},
    {Error::disk_full, "Disk full"},
    {Error::device_error, "Device I/O error"},
    {Error::invalid_argument, "Invalid procedure call or argument"},
    {Error::object_not_set, "Object variable not set"},
    {Error::object_required, "Object required"},
    {Error::no_such_member, "Object doesn't support this property or method"},
    {Error::argument_missing, "Argument not optional"},
    {Error::cannot_create_object, "Component can't create object"},
    {Error::internal_error, "Internal error"},
}};

}  // namespace

const char* text_of(Error error) noexcept {
  for (const Text& row : texts) {
    if (row.error == error) return row.text;
  }
  return "";
}

}  // namespace automation
