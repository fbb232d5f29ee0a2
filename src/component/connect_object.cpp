#include "component/connect_object.h"

#include <atomic>

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

/// Counts for as long as its object lives, the end of it included.
struct Counted {
  Counted() { ++alive; }
  ~Counted() { --alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
};

class ConnectObject final : Counted, public automation::Object, public Connect {
 public:
  Value get(Member /*member*/, Args /*args*/) override { throw Failure(Error::no_such_member); }
  void put(Member /*member*/, Args /*args*/, const Value& /*value*/) override {
    throw Failure(Error::no_such_member);
  }
  Value call(Member member, Args args) override {
    return enter([&] { return dispatch(member, args); });
  }

 private:
  Value dispatch(Member member, Args args);
};

// The first argument as an object; a host that leaves it out gets the failure of an object that isn't set.
automation::Ref first_object(Args args) {
  return args.empty() ? nullptr : args[0].to_object();
}

Value ConnectObject::dispatch(Member member, Args args) {
  switch (member.id()) {
    case id("OnConnection"):
      IDTExtensibility2_OnConnection(host::Application(first_object(args)));
      return {};
    case id("OnDisconnection"):
      IDTExtensibility2_OnDisconnection();
      return {};
    case id("OnAddInsUpdate"):
      IDTExtensibility2_OnAddInsUpdate();
      return {};
    case id("OnStartupComplete"):
      IDTExtensibility2_OnStartupComplete();
      return {};
    case id("OnBeginShutdown"):
      IDTExtensibility2_OnBeginShutdown();
      return {};
    case id("RefreshQuorvexShapes"):
      return RefreshQuorvexShapes(host::Document(first_object(args)));
    case id("GetAppTextFile"):
      return GetAppTextFile();
    case id("PI"):
      return PI();
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
