#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "deskhost/model/desk_object.h"

namespace deskhost {

/// An entry of a menu; `kind` is 0 for a separator, 1 for a command.
struct MenuEntry {
  std::int32_t kind = 1;
  std::string caption;
  std::int32_t command = 0;
};

/// A menu's entries, positions from 1. Members: Count, Item(position), Add(kind, caption, command id,
/// position), Remove(caption or position); an absent entry fails.
class MenuItems final : public DeskObject {
 public:
  /// The entry of `sub_menu_position` (0: none) opens `sub_menu`.
  explicit MenuItems(std::vector<MenuEntry> entries, std::shared_ptr<MenuItems> sub_menu = nullptr,
                     std::size_t sub_menu_position = 0);

  [[nodiscard]] std::string trace_name() const override { return "MenuItems"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  [[nodiscard]] std::vector<MenuEntry> entries() const;

 private:
  automation::Value item(std::size_t index) const;
  automation::Value add(automation::Args args);
  [[nodiscard]] std::size_t find(const automation::Value& caption_or_position) const;

  std::vector<std::shared_ptr<MenuEntry>> entries_;
  std::shared_ptr<MenuItems> sub_menu_;
  std::size_t sub_menu_position_;
};

/// The menu bar. Of the top-level menus only menu 3 is there; entry 17 of it opens the sub menu that add-ins
/// put their entries into.
class Menus final : public DeskObject {
 public:
  /// `stale_entry`: the caption of an entry, with a separator under it, that an earlier run left in the sub
  /// menu; empty for none.
  explicit Menus(const std::string& stale_entry);

  [[nodiscard]] std::string trace_name() const override { return "Menus"; }
  automation::Value get(automation::Member member, automation::Args args) override;

  /// The entries of the sub menu.
  [[nodiscard]] std::vector<MenuEntry> entries() const { return sub_menu_->entries(); }

 private:
  std::shared_ptr<MenuItems> sub_menu_;
  std::shared_ptr<MenuItems> top_menu_;
};

}  // namespace deskhost
