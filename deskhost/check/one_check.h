#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "deskhost/check/sitting.h"

namespace deskhost::check {

/// Checks that are a function of their number, on a stand of their own.
class StandRunner : public Runner {
 public:
  explicit StandRunner(const Place& place) : stand_(place), place_(place) {}

 protected:
  Stand& stand() { return stand_; }
  [[nodiscard]] const Place& place() const { return place_; }
  static void take_down(Sitting& sitting, Report& report) {
    for (std::string& finding : sitting.take_down()) report.findings.push_back(std::move(finding));
  }
  static void expect(bool holds, const std::string& what, Report& report) {
    if (!holds) report.findings.push_back(what);
  }

 private:
  Stand stand_;
  Place place_;
};

template <class SomeRunner>
Set set_of(const char* name, std::size_t batch = 1) {
  return {name, [](const Place& place) { return std::make_unique<SomeRunner>(place); }, batch};
}

}  // namespace deskhost::check
