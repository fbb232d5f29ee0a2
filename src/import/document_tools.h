#pragma once

#include <string_view>

#include "foundation/kept_walk.h"
#include "host/tool.h"

namespace mQuorvex {

/// `M_Tools` of a run, with its two searches. Each is a walk over the whole collection; see KeptWalk for what
/// is kept between them.
class DocumentTools {
 public:
  explicit DocumentTools(const host::Tools& M_Tools)
      : M_Tools_(M_Tools),
        names_(M_Tools, Entries::by_number, Meets::first),
        numbers_(M_Tools, Entries::by_number, Meets::first) {}

  [[nodiscard]] const host::Tools& M_Tools() const noexcept { return M_Tools_; }

  /// The first tool whose name has the text behind the last "#" that `id` has; a view of nothing for none.
  /// Throws Failure (subscript out of range) for an empty id or name, and what the host refuses.
  host::Tool FindToolById(std::string_view id);
  /// The tool that FindToolById gave last was changed.
  void changed_found() { names_.forget(found_); }
  /// A tool was added. Where it isn't to be had by its id (a view of nothing), nobody knows what `M_Tools`
  /// has become.
  void added(const host::Tool& in_document);

  /// The lowest number from 1 that no tool has. A number that is refused counts as the candidate's, and the
  /// walk starts again; a tool that refuses twice in a row is passed over, or the search could never end.
  double lowest_free_number();

 private:
  host::Tools M_Tools_;
  KeptWalk<host::Tool, std::string> names_;
  std::int32_t found_ = 0;  // its number in the collection
  KeptWalk<host::Tool, std::int32_t> numbers_;
  int generation_ = 0;  // of the names, when the numbers were looked through last
  /// The numbers below belong to tools that are known. A number that is known isn't asked again: somebody has
  /// to, for each of them, at each new tool, and the time would grow with their product.
  std::int32_t taken_below_ = 1;
};

}  // namespace mQuorvex
