#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <vector>

#include "platform/com/convert.h"

namespace platform::com {

/// Where the arguments of a call lie: those of nearly all calls without the heap.
class ArgumentRoom {
 public:
  ArgumentRoom() = default;
  ArgumentRoom(const ArgumentRoom&) = delete;
  ArgumentRoom& operator=(const ArgumentRoom&) = delete;

  std::pmr::memory_resource* resource() noexcept { return &resource_; }

 private:
  static constexpr std::size_t size = 512;
  alignas(std::max_align_t) std::array<std::byte, size> bytes_;
  std::pmr::monotonic_buffer_resource resource_{bytes_.data(), size};
};

/// The arguments of a call into a host: by reference, so that changes come back.
class OutgoingArguments {
 public:
  /// `put`, where it isn't null, is the value of a property.
  OutgoingArguments(automation::Args args, const automation::Value* put, RecordTypes& records);
  OutgoingArguments(const OutgoingArguments&) = delete;
  OutgoingArguments& operator=(const OutgoingArguments&) = delete;

  [[nodiscard]] DISPPARAMS* get() noexcept { return &params_; }
  /// From here on each argument refers to a place of its own type, for a callee that has room for nothing
  /// else.
  void pass_typed() noexcept;
  /// What the callee changed.
  void read_back(automation::Args args);

 private:
  ArgumentRoom room_;
  std::pmr::vector<Variant> values_;
  std::pmr::vector<VARIANT> given_;   // as the values were before the call; owns nothing
  std::pmr::vector<VARIANT> passed_;  // last argument first; borrows from values_
  DISPID put_id_ = DISPID_PROPERTYPUT;
  DISPPARAMS params_{};
};

/// The arguments of a call that comes in.
class IncomingArguments {
 public:
  enum class Of { call, put, event };
  /// The first argument of a put is the value of the property. Throws Failure for what isn't a value and for
  /// names; an event is heard all the same: such an argument of it counts as left out, and a named one is the
  /// one of that number.
  IncomingArguments(DISPPARAMS& params, Of of);

  [[nodiscard]] automation::Args args() noexcept { return values_; }
  [[nodiscard]] const automation::Value& put() const noexcept { return put_; }
  /// Changes go to arguments by reference.
  void write_back(RecordTypes& records);

 private:
  automation::Value put_;
  ArgumentRoom room_;
  std::pmr::vector<automation::Value> values_, before_;
  std::pmr::vector<VARIANT*> places_;  // of the values; null for one that was left out
};

}  // namespace platform::com
