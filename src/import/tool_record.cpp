#include "import/tool_record.h"

#include "import/lathe_orientation.h"

namespace mQuorvex {

ToolRecord::ToolRecord(const LineFields& line)
    : fields(&line),
      lathe_tool_orientation(decode_lathe_orientation(line.text(field_orientation_code),
                                                      line.text(field_lathe_tool_orientation))) {}

std::string ToolRecord::text_or_zero(std::size_t field) const {
  std::string value = text(field);
  return value.empty() ? "0" : value;
}

}  // namespace mQuorvex
