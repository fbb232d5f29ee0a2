#include "deskhost/model/menus.h"

#include <algorithm>

#include "deskhost/model/index.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

constexpr std::int32_t top_menu_number = 3;
constexpr std::size_t sub_menu_entry = 17;

class MenuItem final : public DeskObject {
 public:
  MenuItem(std::shared_ptr<MenuEntry> entry, std::size_t position, std::shared_ptr<MenuItems> sub_menu)
      : entry_(std::move(entry)), position_(position), sub_menu_(std::move(sub_menu)) {}

  [[nodiscard]] std::string trace_name() const override {
    return "MenuItem(" + std::to_string(position_) + ")";
  }

  Value get(Member member, Args args) override {
    switch (member.id()) {
      case id("Kind"):
        return entry_->kind;
      case id("Caption"):
        return entry_->caption;
      case id("SubMenu"):
        return Value(sub_menu_);
      default:
        return DeskObject::get(member, args);
    }
  }

 private:
  std::shared_ptr<MenuEntry> entry_;
  std::size_t position_;
  std::shared_ptr<MenuItems> sub_menu_;
};

}  // namespace

MenuItems::MenuItems(std::vector<MenuEntry> entries, std::shared_ptr<MenuItems> sub_menu,
                     std::size_t sub_menu_position)
    : sub_menu_(std::move(sub_menu)), sub_menu_position_(sub_menu_position) {
  for (MenuEntry& entry : entries) entries_.push_back(std::make_shared<MenuEntry>(std::move(entry)));
}

Value MenuItems::get(Member member, Args args) {
  switch (member.id()) {
    case id("Count"):
      return static_cast<std::int32_t>(entries_.size());
    case id("Item"):
      return item(index_of(argument(args, 0), entries_.size()));
    default:
      return DeskObject::get(member, args);
  }
}

Value MenuItems::call(Member member, Args args) {
  switch (member.id()) {
    case id("Add"):
      return add(args);
    case id("Remove"):
      entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(find(argument(args, 0))));
      return {};
    default:
      return DeskObject::call(member, args);
  }
}

Value MenuItems::item(std::size_t index) const {
  const auto sub_menu = index + 1 == sub_menu_position_ ? sub_menu_ : nullptr;
  return Value(std::make_shared<MenuItem>(entries_[index], index + 1, sub_menu));
}

Value MenuItems::add(Args args) {
  MenuEntry entry{argument(args, 0).to_int32(), argument(args, 1).to_text(), argument(args, 2).to_int32()};
  const bool at_end = args.size() < 4 || args[3].is(Value::Kind::Missing);
  const std::size_t index = at_end ? entries_.size() : index_of(args[3], entries_.size() + 1);
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(index),
                  std::make_shared<MenuEntry>(std::move(entry)));
  return item(index);
}

std::size_t MenuItems::find(const Value& caption_or_position) const {
  const std::string* caption = caption_or_position.text();
  if (!caption) return index_of(caption_or_position, entries_.size());
  const auto found =
      std::ranges::find_if(entries_, [&](const auto& entry) { return entry->caption == *caption; });
  if (found == entries_.end()) throw Failure(Error::subscript_out_of_range);
  return static_cast<std::size_t>(found - entries_.begin());
}

std::vector<MenuEntry> MenuItems::entries() const {
  std::vector<MenuEntry> copy;
  for (const auto& entry : entries_) copy.push_back(*entry);
  return copy;
}

Menus::Menus(const std::string& stale_entry) {
  std::vector<MenuEntry> entries;
  if (!stale_entry.empty()) entries = {{1, stale_entry, 0}, {0, "", 0}};
  entries.insert(entries.end(), {{1, "Options", 0}, {0, "", 0}, {1, "About", 0}});
  sub_menu_ = std::make_shared<MenuItems>(std::move(entries));
  top_menu_ = std::make_shared<MenuItems>(std::vector<MenuEntry>(sub_menu_entry), sub_menu_, sub_menu_entry);
}

Value Menus::get(Member member, Args args) {
  if (member.id() != id("Item")) return DeskObject::get(member, args);
  if (argument(args, 0).to_int32() != top_menu_number) throw Failure(Error::subscript_out_of_range);
  return Value(top_menu_);
}

}  // namespace deskhost
