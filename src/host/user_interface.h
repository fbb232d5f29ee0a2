#pragma once

#include "host/facade.h"

namespace host {

/// Kinds of menu items and toolbar buttons.
inline constexpr std::int32_t kind_separator = 0;
inline constexpr std::int32_t kind_command = 1;

/// The add-in as its host registered it; the source of OnCommand and OnCommandUI.
class AddIn : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::int32_t Cookie() const { return get("Cookie").to_int32(); }
  /// Gives the command id.
  [[nodiscard]] std::int32_t AddCommand(std::int32_t cookie, std::int32_t number,
                                        std::string_view name) const {
    return call("AddCommand", cookie, number, name).to_int32();
  }
};

class ToolBarButton : public Facade {
 public:
  using Facade::Facade;
  void Visible(bool visible) const { put("Visible", visible); }
  void ScreenTip(std::string_view text) const { put("ScreenTip", text); }
  void HelpString(std::string_view text) const { put("HelpString", text); }
  void SetBitmaps(std::string_view file16, std::string_view file32) const {
    call("SetBitmaps", file16, file32);
  }
};

/// Positions and coordinates are the host's.
class ToolBar : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] bool Visible() const { return get("Visible").to_bool(); }
  void Visible(bool visible) const { put("Visible", visible); }
  [[nodiscard]] std::int32_t Position() const { return get("Position").to_int32(); }
  void Position(std::int32_t position) const { put("Position", position); }
  [[nodiscard]] std::int32_t Top() const { return get("Top").to_int32(); }
  void Top(std::int32_t top) const { put("Top", top); }
  [[nodiscard]] std::int32_t Left() const { return get("Left").to_int32(); }
  void Left(std::int32_t left) const { put("Left", left); }
  void Add(std::int32_t kind, std::string_view name, std::int32_t command_id) const {
    call("Add", kind, name, command_id, automation::missing);
  }
  [[nodiscard]] ToolBarButton Item(std::int32_t index) const { return child<ToolBarButton>("Item", index); }
};

class ToolBars : public Facade {
 public:
  using Facade::Facade;
  ToolBar Add(std::string_view name) const { return ToolBar(call("Add", name).to_object()); }
  void Remove(std::string_view name) const { call("Remove", name); }
};

class MenuItems;

class MenuItem : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::int32_t Kind() const { return get("Kind").to_int32(); }
  [[nodiscard]] MenuItems SubMenu() const;
};

class MenuItems : public Facade {
 public:
  using Facade::Facade;
  /// `position` counts from 1.
  void Add(std::int32_t kind, std::string_view caption, std::int32_t command_id,
           std::int32_t position) const {
    call("Add", kind, caption, command_id, position);
  }
  void Remove(std::string_view caption) const { call("Remove", caption); }
  void Remove(std::int32_t position) const { call("Remove", position); }
  [[nodiscard]] MenuItem Item(std::int32_t position) const { return child<MenuItem>("Item", position); }
};

inline MenuItems MenuItem::SubMenu() const {
  return child<MenuItems>("SubMenu");
}

class Menus : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] MenuItems Item(std::int32_t number) const { return child<MenuItems>("Item", number); }
};

}  // namespace host
