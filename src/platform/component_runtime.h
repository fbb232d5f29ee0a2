#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "automation/object.h"

/// The system's component runtime: classes that a program offers, components that it loads.
namespace platform {

/// The folder of the component (or program) that this code is part of, in the add-in's form (backslashes on
/// Windows, "/" mapped to "\" on posix), without a closing separator.
std::string component_folder();

/// The file name of the component (or program) that this code is part of, without folder and extension; on
/// posix also without "lib".
std::string component_name();

/// Makes an object of a class by its name ("EspritTools.ToolFactory"). On posix the host's program offers its
/// classes (see below); on Windows the program's manifest or the registry knows them. Throws
/// Failure(cannot_create_object) for an unknown class, and whatever the class's maker throws.
automation::Ref create_object(std::string_view class_name);

/// Offers classes to every component in this process; an empty function takes the offer back. A maker gives
/// null for a class that it doesn't know.
using ClassMaker = std::function<automation::Ref(std::string_view class_name)>;
void offer_classes(ClassMaker maker);

/// A component that is loaded into this process, by its four exported functions.
class Component {
 public:
  virtual ~Component() = default;
  Component() = default;
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// Makes an object of one of the component's classes through its class factory; throws Failure.
  virtual automation::Ref create(std::string_view class_name) = 0;
  /// What DllCanUnloadNow says: true when no object of the component is left.
  virtual bool can_unload() = 0;
};

/// Loads a component file (native path); throws Failure with the loader's reason. Destroying the result
/// unloads it, unless objects of it are left. Without a file it is the component that the system's registry
/// knows by the name of the class that is made (Windows only), and a class that isn't registered fails at
/// `create`.
std::unique_ptr<Component> load_component(const std::string& file);

}  // namespace platform
