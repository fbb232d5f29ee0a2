#include "deskhost/session/session.h"

#include <array>
#include <charconv>
#include <map>

#include "deskhost/document/document_file.h"
#include "deskhost/document/doubts.h"
#include "deskhost/model/application.h"
#include "deskhost/model/document.h"
#include "deskhost/model/shape_manager.h"
#include "platform/component_runtime.h"

namespace deskhost {

using automation::Array;
using automation::Failure;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace {

constexpr const char* addin_name = "QVEsprit";  // of the menu entry that an earlier run left
constexpr std::int32_t foreign_cookie = AddIn::cookie + 1;

struct PlacementMember {
  const char* name;
  bool is_flag;
};
constexpr std::array<PlacementMember, 4> placement_members{
    {{"Visible", true}, {"Position", false}, {"Top", false}, {"Left", false}}};

Value placement_value(const PlacementMember& member, const std::string& text) {
  if (member.is_flag) {
    if (text == "true" || text == "false") return text == "true";
    throw WrongUse(std::string(member.name) + " refuses \"" + text + "\"", "give true or false");
  }
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && rest == end) return number;
  throw WrongUse(std::string(member.name) + " refuses \"" + text + "\"", "give a whole number");
}

/// Name and value as the toolbar takes them.
std::pair<std::string, Value> placement_of(const Assignment& change) {
  for (const PlacementMember& member : placement_members) {
    if (change.first == member.name) return {change.first, placement_value(member, change.second)};
  }
  throw WrongUse("a toolbar has no \"" + change.first + "\"", "there are Visible, Position, Top and Left");
}

std::string class_part(std::string_view name) {
  return std::string(name.substr(name.rfind('.') + 1));
}

}  // namespace

void check_placement(const std::vector<Assignment>& changes) {
  for (const Assignment& change : changes) placement_of(change);
}

// The members end in reverse order: the add-in first, the options, which keep the component loaded, last.
struct Session::Impl {
  explicit Impl(SessionOptions session_options);

  Ref create(std::string_view class_name);
  void set_document(std::shared_ptr<Document> opened);
  std::shared_ptr<Document> load(const std::string& file);
  void open(const std::string& file, Member event, std::vector<Value> args);
  void close();
  const std::shared_ptr<Document>& open_document() const;
  std::shared_ptr<Tool> tool_named(const std::string& tool_id) const;
  /// A call of the connection interface; a failure is reported.
  void step(Member name, std::vector<Value> args);
  void report(std::string_view event, std::string_view text);

  SessionOptions options;
  std::size_t failures = 0;
  DeskRef desk = std::make_shared<Desk>();
  std::shared_ptr<Gate> gate;
  std::shared_ptr<Application> application;
  std::shared_ptr<Document> document;
  std::map<std::string, std::function<Ref()>, std::less<>> makers;
  Ref addin;
  bool was_connected = false, is_shut_down = false, is_disconnected = false;
};

Session::Impl::Impl(SessionOptions session_options)
    : options(std::move(session_options)),
      gate(make_gate(options.gate)),
      application(
          std::make_shared<Application>(desk, ApplicationOptions{options.language, options.major_version,
                                                                 options.stale_menu ? addin_name : ""})) {
  desk->failure_of_event = [this](std::string_view event, std::string_view text) { report(event, text); };
}

void Session::Impl::report(std::string_view event, std::string_view text) {
  ++failures;
  if (options.on_failure) options.on_failure(event, text);
}

Ref Session::Impl::create(std::string_view class_name) {
  const std::string name = class_part(class_name);
  return gate->create(name, [&]() -> Ref {
    const auto maker = makers.find(name);
    return maker == makers.end() ? nullptr : maker->second();
  });
}

void Session::Impl::step(Member name, std::vector<Value> args) {
  try {
    addin->call(name, args);
  } catch (const Failure& failure) {
    report(name.name(), failure.what());
  }
}

const std::shared_ptr<Document>& Session::Impl::open_document() const {
  if (!document) throw WrongUse("no document is open", "open one before, with \"open FILE\"");
  return document;
}

std::shared_ptr<Tool> Session::Impl::tool_named(const std::string& tool_id) const {
  auto tool = open_document()->tools().find_by_id(tool_id);
  if (!tool) throw WrongUse("no tool has the ToolID \"" + tool_id + "\"", "\"show\" lists the tools");
  return tool;
}

void Session::Impl::set_document(std::shared_ptr<Document> opened) {
  document = std::move(opened);
  application->document = document;
}

std::shared_ptr<Document> Session::Impl::load(const std::string& file) {
  auto loaded = load_document(file, desk);
  for (const std::string& doubt : doubts_about(*loaded)) {
    if (options.on_doubt) options.on_doubt(file + ": " + doubt);
  }
  return loaded;
}

void Session::Impl::open(const std::string& file, Member event, std::vector<Value> args) {
  auto opened = load(file);
  if (document) close();
  set_document(std::move(opened));
  application->raise(event, std::move(args));
}

void Session::Impl::close() {
  const auto closing = open_document();
  closing->raise_before_close();
  set_document(nullptr);
  application->raise("AfterDocumentClose", {});
}

Session::Session(SessionOptions options) : impl_(std::make_unique<Impl>(std::move(options))) {
  offer("ShapeManager", make_shape_manager);
  offer("ToolFactory", [desk = impl_->desk] { return make_tool_factory(desk); });
  offer("Point", [] { return make_point(); });
  offer("Vector", [] { return make_vector(); });
  platform::offer_classes([impl = impl_.get()](std::string_view name) { return impl->create(name); });
}

Session::~Session() {
  platform::offer_classes({});
  impl_->desk->failure_of_event = nullptr;
  impl_->addin.reset();
  impl_->gate->end_trace();
}

void Session::offer(const std::string& name, std::function<Ref()> maker) {
  impl_->makers[name] = std::move(maker);
}

void Session::connect() {
  Impl& s = *impl_;
  if (s.addin || !s.options.make_addin) {
    s.was_connected = true;
    return;
  }
  s.addin = s.options.make_addin();
  s.was_connected = true;
  s.is_shut_down = s.is_disconnected = false;
  s.application->add_in->commands.clear();
  s.step("OnConnection", {s.gate->wrap(Value(s.application)), std::int32_t{0},
                          s.gate->wrap(Value(s.application->add_in)), Array{}});
  s.step("OnAddInsUpdate", {Array{}});
  s.step("OnStartupComplete", {Array{}});
}

void Session::shutdown() {
  if (!impl_->addin || std::exchange(impl_->is_shut_down, true)) return;
  impl_->step("OnBeginShutdown", {Array{}});
}

void Session::disconnect() {
  if (!impl_->addin || std::exchange(impl_->is_disconnected, true)) return;
  impl_->step("OnDisconnection", {std::int32_t{0}, Array{}});
}

void Session::release() {
  impl_->addin.reset();
}

void Session::take_down() {
  shutdown();
  disconnect();
  release();
  impl_->set_document(nullptr);
}

void Session::preload(const std::string& file) {
  if (impl_->was_connected) throw WrongUse("the add-in is connected already", "preload comes first");
  impl_->set_document(impl_->load(file));
}

void Session::open(const std::string& file) {
  impl_->open(file, "AfterDocumentOpen", {file});
}
void Session::open_new(const std::string& file) {
  impl_->open(file, "AfterNewDocumentOpen", {});
}
void Session::open_template(const std::string& file) {
  impl_->open(file, "AfterTemplateOpen", {file});
}
void Session::close() {
  impl_->close();
}

void Session::command(std::int32_t number) {
  command_ui(number);
  impl_->application->add_in->raise_command(AddIn::cookie, number);
}

void Session::foreign(std::int32_t number) {
  static_cast<void>(impl_->application->add_in->raise_command_ui(foreign_cookie, number));
  impl_->application->add_in->raise_command(foreign_cookie, number);
}

bool Session::command_ui(std::int32_t number) {
  return impl_->application->add_in->raise_command_ui(AddIn::cookie, number).enabled;
}

void Session::modify(const std::string& tool_id, const std::vector<Assignment>& parameters) {
  const auto tool = impl_->tool_named(tool_id);
  const auto document = impl_->document;
  try {
    document->user_modify(tool, parameters);
  } catch (const RefusedValue& refused) {
    throw WrongUse(refused.what(), refused.hint);
  }
}

void Session::remove(const std::string& tool_id) {
  const auto tool = impl_->tool_named(tool_id);
  const auto document = impl_->document;
  document->user_delete(tool);
}

void Session::simulate() {
  const auto document = impl_->open_document();
  document->simulate();
}

void Session::save(const std::string& file) {
  save_document(*impl_->open_document(), file);
}

void Session::toolbar(const std::vector<Assignment>& changes) {
  const auto& bars = impl_->application->tool_bars->bars;
  if (bars.empty()) throw WrongUse("the add-in has no toolbar", "the add-in makes it when it is connected");
  std::vector<std::pair<std::string, Value>> placement;
  placement.reserve(changes.size());
  for (const Assignment& change : changes) placement.push_back(placement_of(change));
  for (const auto& [name, value] : placement) bars.front()->put(Member::named(name), {}, value);
}

void Session::language(std::int32_t number) {
  impl_->application->configuration->language = number;
}

Application& Session::application() {
  return *impl_->application;
}
std::shared_ptr<Document> Session::document() const {
  return impl_->document;
}
Ref Session::addin() const {
  return impl_->addin;
}
Gate& Session::gate() {
  return *impl_->gate;
}
std::size_t Session::failures() const {
  return impl_->failures;
}

}  // namespace deskhost
