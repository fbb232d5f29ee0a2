#include "component/connect_object.h"

#include <atomic>

#include "automation/number.h"
#include "foundation/edge.h"
#include "platform/text.h"
#include "shell/Connect.h"

namespace component {
namespace {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

std::atomic<int> alive{0};

class ConnectObject : public automation::Object {
 public:
  ConnectObject() { ++alive; }
  ~ConnectObject() override { --alive; }
  ConnectObject(const ConnectObject&) = delete;
  ConnectObject& operator=(const ConnectObject&) = delete;

  Value get(Member /*member*/, Args /*args*/) override { throw Failure(Error::no_such_member); }
  void put(Member /*member*/, Args /*args*/, const Value& /*value*/) override {
    throw Failure(Error::no_such_member);
  }
  Value call(Member member, Args args) override {
    return only_failures_leave([&] { return dispatch(member, args); });
  }

 private:
  Value dispatch(Member member, Args args);

  Connect connect_;
};

// The first argument as an object; a host that leaves it out gets the failure of an object that isn't set.
automation::Ref first_object(Args args) {
  return args.empty() ? nullptr : args[0].to_object();
}

Value ConnectObject::dispatch(Member member, Args args) {
  switch (member.id()) {
    case id("OnConnection"):
      automation::set_decimal_sign(platform::decimal_sign());
      connect_.IDTExtensibility2_OnConnection(host::Application(first_object(args)));
      return {};
    case id("OnDisconnection"):
      connect_.IDTExtensibility2_OnDisconnection();
      return {};
    case id("OnAddInsUpdate"):
      connect_.IDTExtensibility2_OnAddInsUpdate();
      return {};
    case id("OnStartupComplete"):
      connect_.IDTExtensibility2_OnStartupComplete();
      return {};
    case id("OnBeginShutdown"):
      connect_.IDTExtensibility2_OnBeginShutdown();
      return {};
    case id("RefreshQuorvexShapes"):
      return connect_.RefreshQuorvexShapes(host::Document(first_object(args)));
    case id("GetAppTextFile"):
      return connect_.GetAppTextFile();
    case id("PI"):
      return connect_.PI();
    default:
      throw Failure(Error::no_such_member);
  }
}

}  // namespace

automation::Ref make_connect_object() {
  return std::make_shared<ConnectObject>();
}

int objects_alive() noexcept {
  return alive;
}

}  // namespace component
