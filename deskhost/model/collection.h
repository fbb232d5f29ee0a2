#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "deskhost/model/desk_object.h"
#include "deskhost/model/index.h"

namespace deskhost {

/// A collection whose items the document file gives. Members: Count, Item(index from 1), _NewEnum (all
/// items).
template <class T>
class Collection : public DeskObject {
 public:
  explicit Collection(std::string trace_name) : trace_name_(std::move(trace_name)) {}

  [[nodiscard]] std::string trace_name() const override { return trace_name_; }

  automation::Value get(automation::Member member, automation::Args args) override {
    switch (member.id()) {
      case automation::id("Count"):
        return static_cast<std::int32_t>(items.size());
      case automation::id("Item"):
        return automation::Value(items[index_of(argument(args, 0), items.size())]);
      case automation::id("_NewEnum"):
        return automation::Array(items.begin(), items.end());
      default:
        return DeskObject::get(member, args);
    }
  }

  std::vector<std::shared_ptr<T>> items;

 private:
  std::string trace_name_;
};

}  // namespace deskhost
