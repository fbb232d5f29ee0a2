#pragma once

#include <cstdint>
#include <string_view>

namespace automation {

/// The name of a member of a host object. A literal becomes one at compile time, so a call costs no name
/// look-up; two names that differ only in case are the same member. The text is borrowed: a literal, or
/// storage of the caller's that outlives the member (see `Member::named`).
class Member {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): facades write `get("Name")`
  consteval Member(const char* literal) : name_(literal), id_(identity(name_)) {}

  /// A member whose name is known only at run time; `name` has to outlive the result.
  static constexpr Member named(std::string_view name) noexcept { return Member(name, identity(name)); }

  [[nodiscard]] constexpr std::string_view name() const noexcept { return name_; }
  /// The same for names that differ only in case; fit for `switch`.
  [[nodiscard]] constexpr std::uint64_t id() const noexcept { return id_; }

  friend constexpr bool operator==(const Member& a, const Member& b) noexcept { return a.id_ == b.id_; }

 private:
  constexpr Member(std::string_view name, std::uint64_t id) noexcept : name_(name), id_(id) {}

  // FNV-1a, 64 bits, over the lower-cased name.
  static constexpr std::uint64_t identity(std::string_view name) noexcept {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : name) {
      const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      hash = (hash ^ static_cast<unsigned char>(lower)) * 0x100000001b3U;
    }
    return hash;
  }

  std::string_view name_;
  std::uint64_t id_;
};

/// `case id("Name"):` in a host object's dispatch; a clash of two names doesn't compile.
consteval std::uint64_t id(const char* literal) {
  return Member(literal).id();
}

}  // namespace automation
