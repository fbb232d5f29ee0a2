#include "formats/exchange_line.h"

#include <array>

#include "automation/failure.h"
#include "automation/number.h"
#include "platform/text.h"

namespace formats {
namespace {

using automation::Error;
using automation::Failure;

constexpr std::size_t field_count = 18;

struct TextField {
  std::size_t index;
  std::string ExchangeLine::*member;
};
constexpr std::array<TextField, 10> text_fields{{
    {0, &ExchangeLine::StandardName},
    {1, &ExchangeLine::ClassName},
    {2, &ExchangeLine::ConditionName},
    {3, &ExchangeLine::OperationName},
    {4, &ExchangeLine::CutterMaterialName},
    {5, &ExchangeLine::MaterialColumn1},
    {6, &ExchangeLine::MaterialColumn2},
    {7, &ExchangeLine::MaterialColumn3},
    {8, &ExchangeLine::Units},
    {17, &ExchangeLine::Note},
}};

struct NumberField {
  std::size_t index;
  double ExchangeLine::*member;
};
constexpr std::array<NumberField, 4> number_fields{{
    {10, &ExchangeLine::ValueA},
    {12, &ExchangeLine::ValueB},
    {15, &ExchangeLine::ValueC},
    {16, &ExchangeLine::ValueD},
}};

std::string_view first_characters(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; at < text.size(); ++at) {
    if (platform::begins_character(text[at]) && count-- == 0) break;
  }
  return text.substr(0, at);
}

/// The blanks that fill a column behind `text`.
std::string filling(std::string_view text, std::size_t width) {
  const std::size_t used = platform::character_count(text);
  if (used > width) throw Failure(Error::invalid_argument);
  return std::string(width - used, ' ');
}

}  // namespace

std::string ExchangeLine::material_name() const {
  constexpr std::size_t narrow = 10;
  constexpr std::size_t wide = 20;
  std::string name = MaterialColumn1 + filling(MaterialColumn1, narrow) + " | ";
  name += MaterialColumn2 + filling(MaterialColumn2, wide) + " | ";
  name += first_characters(MaterialColumn3, wide);
  return name;
}

bool is_comment(std::string_view line) noexcept {
  return line.starts_with('*');
}

ExchangeLine parse_exchange_line(std::string_view line) {
  std::array<std::string_view, field_count> fields;
  // A line of nothing has no field at all; otherwise there is one more than there are semicolons.
  bool more = !line.empty();
  for (std::string_view& field : fields) {
    if (!more) throw Failure(Error::subscript_out_of_range);
    const std::size_t end = line.find(';');
    field = line.substr(0, end);
    more = end != line.npos;
    if (more) line.remove_prefix(end + 1);
  }
  ExchangeLine result;
  for (const TextField& row : text_fields) result.*row.member = platform::from_code_page(fields[row.index]);
  for (const NumberField& row : number_fields) {
    result.*row.member = automation::numeric_prefix(fields[row.index]);
  }
  return result;
}

}  // namespace formats
