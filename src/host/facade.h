#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/object.h"

/// The host's object model under its own names: typed, one-line views of automation objects. A view holds a
/// reference; a view of nothing fails at every call with "Object variable not set". What the host refuses is
/// thrown as automation::Failure.
namespace host {

class Facade {
 public:
  Facade() = default;
  explicit Facade(automation::Ref object) : object_(std::move(object)) {}

  [[nodiscard]] bool is_nothing() const noexcept { return object_ == nullptr; }
  [[nodiscard]] const automation::Ref& ref() const noexcept { return object_; }
  void release() noexcept { object_.reset(); }

 protected:
  template <class... A>
  [[nodiscard]] automation::Value get(automation::Member member, A&&... args) const {
    std::array<automation::Value, sizeof...(A)> values{automation::Value(std::forward<A>(args))...};
    return object()->get(member, values);
  }
  template <class... A>
  automation::Value call(automation::Member member, A&&... args) const {
    std::array<automation::Value, sizeof...(A)> values{automation::Value(std::forward<A>(args))...};
    return object()->call(member, values);
  }
  void put(automation::Member member, const automation::Value& value) const {
    object()->put(member, {}, value);
  }
  /// The object that a property gives, as the view `F`.
  template <class F, class... A>
  [[nodiscard]] F child(automation::Member member, A&&... args) const {
    return F(get(member, std::forward<A>(args)...).to_object());
  }

 private:
  // A reference of the call's own: an event inside it may release the view.
  [[nodiscard]] automation::Ref object() const {
    if (!object_) throw automation::Failure(automation::Error::object_not_set);
    return object_;
  }

  automation::Ref object_;
};

/// A host collection, numbered from 1; an index beyond it fails.
template <class ItemView>
class Collection : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::int32_t Count() const { return get("Count").to_int32(); }
  [[nodiscard]] ItemView Item(std::int32_t index) const { return child<ItemView>("Item", index); }
  /// All items in their order, with one host call; a copy that later changes of the collection don't touch.
  [[nodiscard]] std::vector<ItemView> all() const {
    std::vector<ItemView> items;
    const automation::Value array = get("_NewEnum");
    for (const automation::Value& item : array.to_array()) items.emplace_back(item.to_object());
    return items;
  }
};

}  // namespace host
