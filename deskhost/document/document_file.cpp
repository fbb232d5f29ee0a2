#include "deskhost/document/document_file.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <system_error>

#include "deskhost/document/document_reader.h"
#include "deskhost/document/document_writer.h"
#include "deskhost/document/json_source.h"
#include "deskhost/document/json_writer.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/leftover.h"
#include "deskhost/system/pipe_end.h"
#include "deskhost/system/write_protection.h"

namespace deskhost {
namespace {

namespace fs = std::filesystem;

std::string last_system_error() {
  return std::generic_category().message(errno);
}

/// A device or a pipe may never end, or never begin.
void refuse_what_is_no_file(const std::string& file) {
  std::error_code ignored;
  const fs::file_status status = fs::status(path_of(file), ignored);
  if (!fs::exists(status) || fs::is_regular_file(status)) return;
  throw DocumentFileError(file + ": can't be read: it is no regular file",
                          "give a file, not a folder, a device or a pipe");
}

std::string content_of(const std::string& file) {
  if (file == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  refuse_what_is_no_file(file);
  errno = 0;
  std::ifstream in(path_of(file), std::ios::binary);
  if (!in) {
    throw DocumentFileError(file + ": can't be opened: " + last_system_error(),
                            "check the path of the document, and its rights");
  }
  std::string content;
  std::error_code ignored;
  if (const auto size = fs::file_size(path_of(file), ignored); !ignored) content.reserve(size);
  std::array<char, 65536> block{};
  while (in.read(block.data(), block.size()), in.gcount() > 0) {
    content.append(block.data(), static_cast<std::size_t>(in.gcount()));
  }
  if (in.bad()) {
    throw DocumentFileError(file + ": can't be read: " + last_system_error(), "check that it is a file");
  }
  return content;
}

/// Takes the numbers of a document's tools back unless the document came to be.
class ToolNumbers {
 public:
  explicit ToolNumbers(Desk& desk) : desk_(desk), next_(desk.next_tool_number) {}
  ~ToolNumbers() { desk_.next_tool_number = next_; }
  ToolNumbers(const ToolNumbers&) = delete;
  ToolNumbers& operator=(const ToolNumbers&) = delete;
  void keep() { next_ = desk_.next_tool_number; }

 private:
  Desk& desk_;
  int next_;
};

/// A file beside the one that it becomes; it goes where it doesn't. Its name is short, so that a target may
/// have the longest one there can be.
class Draft {
 public:
  explicit Draft(const fs::path& target)
      : target_(target), file_(target.parent_path() / (".new-" + std::to_string(std::random_device{}()))) {}

  [[nodiscard]] const fs::path& path() const { return file_.path(); }
  void become_target() {
    std::error_code ignored;
    const fs::perms permissions = fs::status(target_, ignored).permissions();
    if (permissions != fs::perms::unknown && fs::exists(target_, ignored)) {
      fs::permissions(path(), permissions, ignored);
    }
    fs::rename(path(), target_);
    file_.forget();
  }

 private:
  fs::path target_;
  Leftover file_;
};

/// A rename asks nothing of the file that it replaces, so what is write-protected is asked for here.
void refuse_what_is_protected(const fs::path& target) {
  if (is_write_protected(target)) throw std::system_error(EACCES, std::generic_category());
}

void write_to(const Document& document, const fs::path& path) {
  errno = 0;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out) write_document(document, out);
  out.close();
  if (!out) throw std::system_error(errno, std::generic_category());
}

}  // namespace

std::shared_ptr<Document> load_document(const std::string& file, const DeskRef& desk) {
  const std::string content = content_of(file);
  if (const auto nul = content.find('\0'); nul != std::string::npos) {
    throw DocumentFileError(file + ", byte " + std::to_string(nul + 1) + ": a NUL, which no document has",
                            "look at what wrote the file; a UTF-16 text has to become UTF-8");
  }
  ToolNumbers numbers(*desk);
  try {
    auto document = read_document(parse_json(content), desk);
    numbers.keep();
    return document;
  } catch (const JsonSyntaxError& error) {
    throw DocumentFileError(file + ", line " + std::to_string(error.line) + ", column " +
                                std::to_string(error.column) + ": " + error.what(),
                            "the document has to be JSON in UTF-8");
  } catch (const BadPlace& error) {
    const std::size_t line = line_of(content, error.path);
    std::string where = file;
    if (line > 0) where += ", line " + std::to_string(line);
    if (!error.path.empty()) where += ": " + error.path;
    throw DocumentFileError(where + ": " + error.what(), error.hint);
  }
}

void save_document(const Document& document, const std::string& file) {
  const std::string hint = "check the folder, its rights and its space";
  try {
    // A link stays one, and what is no file, such as a pipe, is written in place.
    const fs::path named = path_of(file);
    const fs::path target = fs::exists(named) ? fs::canonical(named) : named;
    refuse_what_is_protected(target);
    const PipeEnd held(target);
    if (held.has_no_reader())
      throw DocumentFileError(file + ": can't be written: nobody reads from that pipe",
                              "start its reader first");
    if (fs::exists(target) && !fs::is_regular_file(target)) return write_to(document, target);
    Draft draft(target);
    write_to(document, draft.path());
    draft.become_target();
  } catch (const std::system_error& error) {
    throw DocumentFileError(file + ": can't be written: " + error.code().message(), hint);
  } catch (const NotUtf8& error) {
    throw DocumentFileError(file + ": " + error.what() + ": the text isn't UTF-8", "give it a new text");
  }
}

}  // namespace deskhost
