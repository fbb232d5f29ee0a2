#include "deskhost/document/json_fields.h"

#include <algorithm>
#include <cmath>

namespace deskhost {
namespace {

std::string list_of(std::initializer_list<Field> fields) {
  std::string list;
  for (const Field& each : fields) list += (list.empty() ? "" : ", ") + std::string(each.key);
  return list;
}

void refuse_strangers(const Place& object, std::initializer_list<Field> fields) {
  const auto& members = object.json().get_ref<const Json::object_t&>();
  for (auto member = members.begin(); member != members.end(); ++member) {
    const auto has_key = [&](const auto& other) { return other.first == member->first; };
    const Place place(object, member->first, member->second);
    if (std::ranges::find(fields, std::string_view(member->first), &Field::key) == fields.end()) {
      place.refuse("unknown key", "the keys here are " + list_of(fields));
    }
    if (std::any_of(members.begin(), member, has_key)) place.refuse("the key comes twice", "leave one out");
  }
}

}  // namespace

std::string Place::path() const {
  if (parent_ == nullptr) return {};
  std::string path = parent_->path();
  if (index_) return path + "[" + std::to_string(*index_) + "]";
  return path.empty() ? std::string(key_) : path + "." + std::string(key_);
}

void Place::refuse(const std::string& what, std::string hint) const {
  throw BadPlace(path(), what, std::move(hint));
}

std::string Place::text() const {
  if (!json_.is_string()) refuse("has to be a text", "put it between quotation marks");
  return json_.get<std::string>();
}

std::int32_t Place::whole() const {
  if (!json_.is_number()) refuse("has to be a whole number", "write it in digits, without quotation marks");
  const double number = json_.get<double>();
  if (number != std::trunc(number)) {
    refuse("has to be a whole number, and is " + json_.dump(), "write it without a fraction");
  }
  if (number < INT32_MIN || number > INT32_MAX) {
    refuse("has to be a whole number of 32 bits", "it lies between -2147483648 and 2147483647");
  }
  return static_cast<std::int32_t>(number);
}

double Place::number() const {
  if (!json_.is_number()) refuse("has to be a number", "write it with a point, without quotation marks");
  return json_.get<double>();
}

bool Place::boolean() const {
  if (!json_.is_boolean()) refuse("has to be true or false", "write it without quotation marks");
  return json_.get<bool>();
}

void Place::each(const std::function<void(const Place&)>& read_item) const {
  if (!json_.is_array()) refuse("has to be an array", "write its items between [ and ]");
  for (std::size_t i = 0; i < json_.size(); ++i) read_item(Place(*this, i, json_[i]));
}

void Place::each(std::size_t most, const std::function<void(const Place&)>& read_item) const {
  if (json_.is_array() && json_.size() > most) {
    const std::string limit = std::to_string(most);
    Place(*this, most, json_[most]).refuse("is one too many", "there are " + limit + " of them at most");
  }
  each(read_item);
}

void read_fields(const Place& object, std::initializer_list<Field> fields) {
  if (!object.json().is_object()) object.refuse("has to be an object", "write its members between { and }");
  refuse_strangers(object, fields);
  const auto& members = object.json().get_ref<const Json::object_t&>();
  for (const Field& each : fields) {
    const auto member = std::find_if(members.begin(), members.end(),
                                     [&](const auto& candidate) { return candidate.first == each.key; });
    if (member != members.end()) {
      each.read(Place(object, each.key, member->second));
    } else if (each.need == Field::required) {
      const std::string key(each.key);
      object.refuse("\"" + key + "\" is missing", "add the key \"" + key + "\"");
    }
  }
}

Field field(std::string_view key, std::string& target, Field::Need need) {
  return {key, [&target](const Place& place) { target = place.text(); }, need};
}
Field field(std::string_view key, std::int32_t& target) {
  return {key, [&target](const Place& place) { target = place.whole(); }};
}
Field field(std::string_view key, double& target) {
  return {key, [&target](const Place& place) { target = place.number(); }};
}
Field field(std::string_view key, bool& target) {
  return {key, [&target](const Place& place) { target = place.boolean(); }};
}

}  // namespace deskhost
