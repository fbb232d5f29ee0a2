#include "deskhost/model/desk_object.h"

#include <cmath>

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
