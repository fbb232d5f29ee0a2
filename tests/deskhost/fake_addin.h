#pragma once

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "automation/object.h"

namespace deskhost {

/// What a fake add-in saw and what it is to refuse; outlives the add-in.
struct FakeAddinLog {
  std::vector<std::string> seen;  // calls and events by name, with their plain arguments
  std::set<std::string> failing;  // calls and events that fail with their own name
  bool leaves_something = false;  // keeps an object and a binding beyond its own end
  automation::Ref kept;
  automation::Binding kept_binding;
};

/// An add-in with the connection interface that registers a command, a menu entry and a toolbar, and listens
/// to the application, the add-in object and the document's tools.
class FakeAddin final : public automation::Object {
 public:
  explicit FakeAddin(FakeAddinLog& log) : log_(log) {}
  ~FakeAddin() override { log_.seen.emplace_back("released"); }

  automation::Value get(automation::Member, automation::Args) override { throw no_member(); }
  void put(automation::Member, automation::Args, const automation::Value&) override { throw no_member(); }
  automation::Value call(automation::Member member, automation::Args args) override {
    note(member, args);
    if (member == automation::Member("OnConnection")) connect(args[0].to_object(), args[2].to_object());
    if (member == automation::Member("OnDisconnection")) disconnect();
    return {};
  }

 private:
  static automation::Failure no_member() { return automation::Failure(automation::Error::no_such_member); }

  void note(automation::Member member, automation::Args args) {
    std::string text(member.name());
    for (const automation::Value& value : args) {
      if (value.is_number() || value.text()) text += " " + value.to_text();
    }
    log_.seen.push_back(std::move(text));
    if (log_.failing.contains(std::string(member.name())))
      throw automation::Failure(std::string(member.name()));
  }

  static automation::Ref get_object(const automation::Ref& from, automation::Member member,
                                    std::vector<automation::Value> args = {}) {
    return from->get(member, args).to_object();
  }
  static automation::Value call_on(const automation::Ref& on, automation::Member member,
                                   std::vector<automation::Value> args) {
    return on->call(member, args);
  }

  void listen(const automation::Ref& source) {
    bindings_.push_back(source->events()->bind([this](automation::Member event, automation::Args args) {
      note(event, args);
      if (event == automation::Member("OnCommandUI") && args[0].to_int32() == cookie_) args[2] = true;
      if (event == automation::Member("AfterDocumentOpen")) {
        const automation::Ref document = get_object(application_, "Document");
        listen(document);
        listen(get_object(document, "Tools"));
      }
    }));
  }

  void connect(const automation::Ref& application, const automation::Ref& addin) {
    application_ = application;
    listen(application);
    listen(addin);
    cookie_ = addin->get("Cookie", {}).to_int32();
    const std::int32_t command = call_on(addin, "AddCommand", {cookie_, 0, "Fake"}).to_int32();
    const auto top = get_object(get_object(application, "Menus"), "Item", {3});
    menu_ = get_object(get_object(top, "Item", {17}), "SubMenu");
    call_on(menu_, "Add", {1, "Fake", command, 1});
    const auto bar = call_on(get_object(application, "ToolBars"), "Add", {"Fake"}).to_object();
    call_on(bar, "Add", {1, "Fake1", command});
  }

  void disconnect() {
    if (!menu_) return;  // a failing connection came this far
    if (log_.leaves_something) {
      log_.kept_binding = application_->events()->bind([](automation::Member, automation::Args) {});
      log_.kept = get_object(application_, "Configuration");
    }
    call_on(menu_, "Remove", {"Fake"});
    call_on(get_object(application_, "ToolBars"), "Remove", {"Fake"});
    bindings_.clear();
    application_ = menu_ = nullptr;
  }

  FakeAddinLog& log_;
  automation::Ref application_, menu_;
  std::int32_t cookie_ = 0;
  std::vector<automation::Binding> bindings_;
};

}  // namespace deskhost
