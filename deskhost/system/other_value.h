#pragma once

#include <optional>
#include <string>

#include "deskhost/system/program.h"

namespace deskhost {

/// A variable of the environment that has another value for one scope.
class OtherValue {
 public:
  OtherValue(const char* name, const std::string& value) : name_(name), before_(variable(name)) {
    set_variable(name_, value);
  }
  ~OtherValue() { set_variable(name_, before_); }
  OtherValue(const OtherValue&) = delete;
  OtherValue& operator=(const OtherValue&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace deskhost
