#include "deskhost/document/json_source.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace deskhost {

using Json = nlohmann::ordered_json;

namespace {

std::size_t line_at(std::string_view text, std::size_t offset) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
  return static_cast<std::size_t>(std::count(text.begin(), end, '\n')) + 1;
}

/// Handlers of the parser's events share this: every value goes the same way.
class Handler : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return value(Json()); }
  bool boolean(bool val) override { return value(Json(val)); }
  bool number_integer(number_integer_t val) override { return value(Json(val)); }
  bool number_unsigned(number_unsigned_t val) override { return value(Json(val)); }
  bool number_float(number_float_t val, const string_t& /*s*/) override { return value(Json(val)); }
  bool string(string_t& val) override { return value(Json(std::move(val))); }
  bool binary(binary_t& /*val*/) override { return false; }
  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    error_position = position;
    constexpr int number_overflow = 406;
    is_number_too_large = error.id == number_overflow;
    return false;
  }

  std::size_t error_position = 0;
  bool is_number_too_large = false;

 protected:
  virtual bool value(Json&& value) = 0;
};

/// What no document needs and no reader should have to keep.
constexpr std::size_t max_depth = 1000;

class Builder final : public Handler {
 public:
  Json root;
  bool is_too_deep = false;

  bool start_object(std::size_t /*size*/) override { return open(Json::object()); }
  bool start_array(std::size_t /*size*/) override { return open(Json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    key_ = std::move(name);
    return true;
  }

 protected:
  bool value(Json&& value) override {
    place(std::move(value));
    return true;
  }

 private:
  bool open(Json&& container) {
    is_too_deep = open_.size() == max_depth;
    if (is_too_deep) return false;
    open_.push_back(&place(std::move(container)));
    return true;
  }
  bool close() {
    open_.pop_back();
    return true;
  }
  // A container that is open is its parent's last item, so the pointers in `open_` stay good.
  Json& place(Json&& value) {
    if (open_.empty()) return root = std::move(value);
    Json& parent = *open_.back();
    if (parent.is_array()) return parent.get_ref<Json::array_t&>().emplace_back(std::move(value));
    auto& members = parent.get_ref<Json::object_t&>();
    // As a plain vector: the map's own insertion looks every key up.
    auto& items = static_cast<Json::object_t::Container&>(members);
    return items.emplace_back(std::move(key_), std::move(value)).second;
  }

  std::vector<Json*> open_;
  std::string key_;
};

/// Counts the characters that the parser has taken.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, std::size_t* taken) : at_(at), taken_(taken) {}
  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    ++at_;
    ++*taken_;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const CountingIterator& a, const CountingIterator& b) { return a.at_ == b.at_; }

 private:
  const char* at_;
  std::size_t* taken_;
};

class Finder final : public Handler {
 public:
  Finder(std::string_view wanted, const std::size_t& taken) : wanted_(wanted), taken_(taken) {}

  std::size_t found = 0;
  bool is_found = false;

  bool start_object(std::size_t /*size*/) override { return open(false); }
  bool start_array(std::size_t /*size*/) override { return open(true); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    Level& level = levels_.back();
    path_.resize(level.path_size);
    if (!path_.empty()) path_ += '.';
    path_ += name;
    look();
    return true;
  }

 protected:
  bool value(Json&& /*value*/) override {
    arrive();
    return true;
  }

 private:
  struct Level {
    bool is_array;
    std::size_t path_size;  // of the container's own path
    std::size_t next = 0;
  };

  void arrive() {
    if (levels_.empty() || !levels_.back().is_array) return;
    Level& level = levels_.back();
    path_.resize(level.path_size);
    path_ += '[' + std::to_string(level.next++) + ']';
    look();
  }
  void look() {
    if (path_ != wanted_) return;
    // A number's end is seen at the character behind it.
    found = taken_ == 0 ? 0 : taken_ - 1;
    is_found = true;
  }
  bool open(bool is_array) {
    arrive();
    levels_.push_back({is_array, path_.size()});
    return true;
  }
  bool close() {
    path_.resize(levels_.back().path_size);
    levels_.pop_back();
    return true;
  }

  std::string_view wanted_;
  const std::size_t& taken_;
  std::string path_;
  std::vector<Level> levels_;
};

/// What is wrong at the place where the parser stopped.
std::string reason_at(std::string_view text, std::size_t offset, bool is_too_large) {
  if (is_too_large) return "the number is too large";
  if (offset >= text.size()) return "the text ends too early";
  const auto c = static_cast<unsigned char>(text[offset]);
  if (c >= 0x80) return "a character that isn't UTF-8, or stands where none may";
  if (c == '\n' || c == '\r') return "the line ends too early";
  if (c < ' ') return "a control character, which has to be written as \\u and its number";
  if (c == '"') return "a quotation mark can't stand here";
  return std::string("\"") + text[offset] + "\" can't stand here";
}

/// The offset of the bracket that opens one level too many.
std::size_t depth_error_at(std::string_view text) {
  std::size_t taken = 0;
  Builder builder;
  const char* const begin = text.data();
  Json::sax_parse(CountingIterator(begin, &taken), CountingIterator(begin + text.size(), &taken), &builder);
  return taken;
}

}  // namespace

Json parse_json(std::string_view text) {
  Builder builder;
  if (Json::sax_parse(text.begin(), text.end(), &builder)) return std::move(builder.root);
  const std::size_t position = builder.is_too_deep ? depth_error_at(text) : builder.error_position;
  // The position counts the character at which the parser stopped.
  const std::size_t offset = std::min(position == 0 ? 0 : position - 1, text.size());
  const auto line_start = offset == 0 ? std::string_view::npos : text.rfind('\n', offset - 1);
  const std::size_t column = offset - (line_start == std::string_view::npos ? 0 : line_start + 1) + 1;
  const std::string reason = builder.is_too_deep
                                 ? "more than " + std::to_string(max_depth) + " levels are nested"
                                 : reason_at(text, offset, builder.is_number_too_large);
  throw JsonSyntaxError(reason, line_at(text, offset), column);
}

std::size_t line_of(std::string_view text, std::string_view path) {
  std::size_t taken = 0;
  Finder finder(path, taken);
  const char* const begin = text.data();
  Json::sax_parse(CountingIterator(begin, &taken), CountingIterator(begin + text.size(), &taken), &finder);
  return finder.is_found ? line_at(text, finder.found) : 0;
}

}  // namespace deskhost
