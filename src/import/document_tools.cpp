#include "import/document_tools.h"

#include <optional>
#include <set>
#include <string>

#include "formats/tool_identity.h"
#include "foundation/failures.h"

namespace mQuorvex {
namespace {

// The text behind the last "#"; an empty identity has no last piece.
std::string identifier(std::string_view identity) {
  if (identity.empty()) throw automation::Failure(automation::Error::subscript_out_of_range);
  return std::string(tool_identity::behind_last_hash(identity));
}

}  // namespace

host::Tool DocumentTools::FindToolById(std::string_view id) {
  names_.begin(identifier(id));
  while (names_.next()) {
    const host::Tool tool = names_.entry();
    if (names_.meets(identifier(tool.Name()))) {
      found_ = names_.number();
      return tool;
    }
  }
  return {};
}

void DocumentTools::added(const host::Tool& in_document) {
  if (in_document.is_nothing()) return names_.forget_all();
  names_.appended(in_document);
  numbers_.appended(in_document);
}

double DocumentTools::lowest_free_number() {
  if (names_.generation() != generation_) numbers_.forget_all();  // the names have told of a change
  generation_ = names_.generation();
  if (!numbers_.begin({})) taken_below_ = 1;
  std::int32_t candidate = taken_below_;
  numbers_.begin_again(candidate);
  bool all_told = true;
  std::set<std::int32_t> refused;  // places of tools that refused when they were asked last
  std::set<std::int32_t> passed_over;
  while (numbers_.next()) {
    const std::int32_t place = numbers_.number();
    if (passed_over.contains(place)) continue;
    std::optional<std::int32_t> number;
    if (numbers_.known()) {
      number = candidate;
    } else {
      skip_failure([&] { number = numbers_.entry().Number(); });
    }
    if (number) {
      refused.erase(place);
    } else {
      all_told = false;
      if (!refused.insert(place).second) {
        passed_over.insert(place);
        continue;
      }
    }
    if (!number || numbers_.meets(*number)) numbers_.begin_again(++candidate);
  }
  if (all_told) taken_below_ = candidate;
  return candidate;
}

}  // namespace mQuorvex
