#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace deskhost::check {

/// A line of a trace: a host call, or an event that was raised.
struct Call {
  std::string op, on, member;
  std::string args;           ///< as JSON
  std::string result_object;  ///< the name of the object that came back; empty for none
  std::string key;            ///< the call with all that was given to it
  std::string statement;      ///< without the values, which may come of calls before it
  bool is_event = false;
  bool refused = false;  ///< by the check itself
};

/// The text with the identifiers of rows, 32 hexadecimal digits, all alike: new ones differ from run to run.
std::string without_identifiers(std::string text);

/// The lines of a trace in their order. Numbers of calls and of recordsets don't tell two runs apart.
std::vector<Call> calls_of(std::string_view trace);

/// Where two runs differ: places in `clean` that `other` lacks, and places in `other` that `clean` lacks.
struct Difference {
  std::vector<std::size_t> missing;
  std::vector<std::size_t> extra;
};
/// Compares the calls behind place `from` of both; events count as calls.
Difference difference(const std::vector<Call>& clean, const std::vector<Call>& other, std::size_t from);

/// The places behind `refused` whose calls need what that call would have given: those on its object, on what
/// these would have given, and the rest of its statement, which ends with the next put or call.
std::vector<bool> dependents(const std::vector<Call>& clean, std::size_t refused);

}  // namespace deskhost::check
