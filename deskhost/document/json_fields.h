#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "deskhost/document/document_reader.h"

namespace deskhost {

using Json = nlohmann::ordered_json;

/// A value and its way from the root. Its path becomes a text only where an error needs it; the place that it
/// was made from has to outlive it.
class Place {
 public:
  explicit Place(const Json& root) : json_(root) {}
  Place(const Place& parent, std::string_view key, const Json& json)
      : json_(json), parent_(&parent), key_(key) {}
  Place(const Place& parent, std::size_t index, const Json& json)
      : json_(json), parent_(&parent), index_(index) {}

  [[nodiscard]] const Json& json() const noexcept { return json_; }
  [[nodiscard]] bool is_null() const noexcept { return json_.is_null(); }
  [[nodiscard]] std::string path() const;
  [[noreturn]] void refuse(const std::string& what, std::string hint) const;

  // Each refuses a value of another type.
  [[nodiscard]] std::string text() const;
  [[nodiscard]] std::int32_t whole() const;
  [[nodiscard]] double number() const;
  [[nodiscard]] bool boolean() const;
  void each(const std::function<void(const Place&)>& read_item) const;
  /// The same for an array that can hold `most` items.
  void each(std::size_t most, const std::function<void(const Place&)>& read_item) const;
  /// The place of an item within its array, from 0.
  [[nodiscard]] std::size_t index() const noexcept { return *index_; }

 private:
  const Json& json_;
  const Place* parent_ = nullptr;
  std::string_view key_;
  std::optional<std::size_t> index_;
};

/// A key that an object may have, or has to.
struct Field {
  enum Need { optional, required };
  std::string_view key;
  std::function<void(const Place&)> read;
  Need need = optional;
};

/// Reads the fields in their own order, whatever order the object has. Refuses what is no object, a key that
/// isn't a field or comes twice, and an object without a required one.
void read_fields(const Place& object, std::initializer_list<Field> fields);

Field field(std::string_view key, std::string& target, Field::Need need = Field::optional);
Field field(std::string_view key, std::int32_t& target);
Field field(std::string_view key, double& target);
Field field(std::string_view key, bool& target);

}  // namespace deskhost
