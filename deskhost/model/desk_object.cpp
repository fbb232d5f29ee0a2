#include "deskhost/model/desk_object.h"

#include <cxxabi.h>

#include <cmath>
#include <cstdlib>

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::Member;
using automation::Value;

Value DeskObject::get(Member /*member*/, Args /*args*/) {
  throw Failure(Error::no_such_member);
}
void DeskObject::put(Member /*member*/, Args /*args*/, const Value& /*value*/) {
  throw Failure(Error::no_such_member);
}
Value DeskObject::call(Member /*member*/, Args /*args*/) {
  throw Failure(Error::no_such_member);
}

std::string DeskObject::type_name() const {
  const std::unique_ptr<char, void (*)(void*)> full(
      abi::__cxa_demangle(typeid(*this).name(), nullptr, nullptr, nullptr), std::free);
  std::string_view rest = full ? full.get() : "";
  std::string name;
  while (!rest.empty()) {  // each of the names that a "<" parts, without its namespaces
    const std::string_view part = rest.substr(0, rest.find('<'));
    if (!name.empty()) name += "Of";
    name += part.substr(part.rfind(':') + 1);
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
  }
  return name.substr(0, name.find('>'));
}

Value& argument(Args args, std::size_t index) {
  if (index >= args.size() || args[index].is(Value::Kind::Missing)) throw Failure(Error::argument_missing);
  return args[index];
}

double finite_number(const Value& value) {
  const double number = value.to_double();
  if (!std::isfinite(number)) throw Failure(Error::overflow);
  return number;
}

}  // namespace deskhost
