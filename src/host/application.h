#pragma once

#include "host/document.h"
#include "host/user_interface.h"

namespace host {

class Configuration : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::int32_t Language() const { return get("Language").to_int32(); }
};

/// The host; the source of the document events.
class Application : public Facade {
 public:
  using Facade::Facade;
  /// The active document, or a view of nothing.
  [[nodiscard]] host::Document Document() const { return child<host::Document>("Document"); }
  [[nodiscard]] host::AddIn AddIn() const { return child<host::AddIn>("AddIn"); }
  [[nodiscard]] host::ToolBars ToolBars() const { return child<host::ToolBars>("ToolBars"); }
  [[nodiscard]] host::Menus Menus() const { return child<host::Menus>("Menus"); }
  [[nodiscard]] host::Configuration Configuration() const {
    return child<host::Configuration>("Configuration");
  }
  [[nodiscard]] std::int32_t MajorVersion() const { return get("MajorVersion").to_int32(); }
};

}  // namespace host
