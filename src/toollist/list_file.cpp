#include "toollist/list_file.h"

#include <string>

#include "platform/per_thread.h"
#include "platform/text.h"

namespace mQuorvexList {

template <class Step>
void ListFile::remember_failure(Step&& step) {
  try {
    step();
  } catch (const automation::Failure& failure) {
    if (!broken_) broken_ = failure;
    throw;
  }
}

void ListFile::open(std::string_view path) {
  file_ = platform::OutputFile();
  broken_.reset();
  file_ = platform::OutputFile(path);
}

void ListFile::write_line(std::string_view text) {
  require_complete();
  remember_failure([&] { file_.write(platform::to_code_page(text) + "\r\n"); });
}

void ListFile::close() {
  remember_failure([&] { file_.close(); });
}

void ListFile::require_complete() const {
  if (broken_) throw automation::Failure(*broken_);
}

ListFile& list_file() {
  static platform::PerThread<ListFile> files;
  return files.get();
}

}  // namespace mQuorvexList
