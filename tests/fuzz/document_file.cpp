// Any bytes are a document file: it is refused with a place in it, or it is written as a text that reads back
// as the same.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

#include "deskhost/document/document_reader.h"
#include "deskhost/document/document_writer.h"
#include "deskhost/document/json_source.h"

namespace {

std::string written(std::string_view text) {
  const auto desk = std::make_shared<deskhost::Desk>();
  std::ostringstream out;
  deskhost::write_document(*deskhost::read_document(deskhost::parse_json(text), desk), out);
  return out.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string once;
  try {
    once = written(text);
  } catch (const deskhost::JsonSyntaxError& error) {
    if (error.line == 0 || error.column == 0) std::abort();
    return 0;
  } catch (const deskhost::BadPlace& error) {
    static_cast<void>(deskhost::line_of(text, error.path));
    return 0;
  }
  if (written(once) != once) std::abort();
  return 0;
}
