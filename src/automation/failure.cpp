#include "automation/failure.h"

#include <array>

namespace automation {
namespace {

struct Text {
  Error error;
  int number;
  const char* text;
};

constexpr std::array<Text, 17> texts{{
    {Error::none, 0, ""},
    {Error::overflow, 6, "Overflow"},
    {Error::subscript_out_of_range, 9, "Subscript out of range"},
    {Error::type_mismatch, 13, "Type mismatch"},
    {Error::bad_file_name, 52, "Bad file name or number"},
    {Error::file_not_found, 53, "File not found"},
    {Error::path_not_found, 76, "Path not found"},
    {Error::permission_denied, 70, "Permission denied"},
    {Error::disk_full, 61, "Disk full"},
    {Error::device_error, 57, "Device I/O error"},
    {Error::invalid_argument, 5, "Invalid procedure call or argument"},
    {Error::object_not_set, 91, "Object variable not set"},
    {Error::object_required, 424, "Object required"},
    {Error::no_such_member, 438, "Object doesn't support this property or method"},
    {Error::argument_missing, 449, "Argument not optional"},
    {Error::cannot_create_object, 429, "Component can't create object"},
    {Error::internal_error, 51, "Internal error"},
}};

}  // namespace

const char* text_of(Error error) noexcept {
  for (const Text& row : texts) {
    if (row.error == error) return row.text;
  }
  return "";
}

int number_of(Error error) noexcept {
  for (const Text& row : texts) {
    if (row.error == error) return row.number;
  }
  return 0;
}

Error error_numbered(int number) noexcept {
  for (const Text& row : texts) {
    if (row.number == number) return row.error;
  }
  return Error::none;
}

}  // namespace automation
