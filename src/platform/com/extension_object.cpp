#include "platform/com/extension_object.h"

#include "platform/com/bridge.h"
#include "platform/com/convert.h"
#include "platform/com/extensibility.h"
#include "platform/com/result.h"

namespace platform::com {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace {

/// The array that each call of the connection interface takes; one that is left out is empty.
class CustomArray {
 public:
  explicit CustomArray(Args args, std::size_t index) {
    RecordTypes none{{}};
    to_variant(index < args.size() ? Value(args[index].to_array()) : Value(automation::Array{}), none,
               array_.get());
  }
  SAFEARRAY** get() { return &V_ARRAY(&array_.get()); }

 private:
  Variant array_;
};

const Value& argument(Args args, std::size_t index) {
  if (index >= args.size()) throw Failure(Error::argument_missing);
  return args[index];
}

class ExtensionObject final : public automation::Object {
 public:
  explicit ExtensionObject(const ComPtr<IUnknown>& addin) : extension_(addin.as<IDTExtensibility2>()) {
    const auto dispatch = addin.as<IDispatch>();
    if (!extension_ || !dispatch) throw Failure(Error::cannot_create_object);
    others_ = make_com_object(dispatch.get());
  }

  Value get(Member member, Args args) override { return others_->get(member, args); }
  void put(Member member, Args args, const Value& value) override { others_->put(member, args, value); }
  Value call(Member member, Args args) override;

 private:
  ComPtr<IDTExtensibility2> extension_;
  Ref others_;
};

Value ExtensionObject::call(Member member, Args args) {
  switch (member.id()) {
    case id("OnConnection"):
      check(extension_->OnConnection(
          export_object(argument(args, 0).to_object()).get(), argument(args, 1).to_int32(),
          export_object(argument(args, 2).to_object()).get(), CustomArray(args, 3).get()));
      return {};
    case id("OnDisconnection"):
      check(extension_->OnDisconnection(argument(args, 0).to_int32(), CustomArray(args, 1).get()));
      return {};
    case id("OnAddInsUpdate"):
      check(extension_->OnAddInsUpdate(CustomArray(args, 0).get()));
      return {};
    case id("OnStartupComplete"):
      check(extension_->OnStartupComplete(CustomArray(args, 0).get()));
      return {};
    case id("OnBeginShutdown"):
      check(extension_->OnBeginShutdown(CustomArray(args, 0).get()));
      return {};
    default:
      return others_->call(member, args);
  }
}

}  // namespace

Ref make_extension_object(const ComPtr<IUnknown>& addin) {
  return std::make_shared<ExtensionObject>(addin);
}

}  // namespace platform::com
