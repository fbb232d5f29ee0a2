#include "deskhost/check/sitting.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "deskhost/check/shop_system.h"
#include "deskhost/document/document_file.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/model/application.h"

namespace deskhost::check {
namespace {

std::filesystem::path& standard_error_file() {
  static std::filesystem::path file;
  return file;
}

std::vector<std::string> messages_in(std::string_view text) {
  constexpr std::string_view mark = "message box: ";
  std::vector<std::string> messages;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    const std::string_view line = text.substr(0, end);
    if (line.starts_with(mark)) {
      messages.push_back(nlohmann::json::parse(line.substr(mark.size())).value("text", ""));
    }
    text.remove_prefix(end + 1);
  }
  return messages;
}

std::vector<std::string> menu_of(Session& session) {
  std::vector<std::string> captions;
  for (const MenuEntry& entry : session.application().menus->entries()) captions.push_back(entry.caption);
  return captions;
}

bool refuses_user_interface(const std::vector<Call>& calls) {
  return std::ranges::any_of(calls, [](const Call& call) {
    const bool is_of_user_interface = call.on.starts_with("Menu") || call.on == "ToolBars" ||
                                      call.member == "Menus" || call.member == "ToolBars";
    return call.refused && is_of_user_interface;
  });
}

std::size_t calls_in(const Outcome& outcome) {
  return static_cast<std::size_t>(
      std::ranges::count_if(outcome.calls, [](const Call& call) { return !call.is_event; }));
}

}  // namespace

void read_standard_error_from(const std::filesystem::path& file) {
  standard_error_file() = file;
}

std::string standard_error() {
  std::ifstream in(standard_error_file(), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

Sitting::Sitting(const Shop& shop, const std::function<automation::Ref()>& make_addin,
                 const std::string& preload)
    : shop_(shop), files_open_(open_files(shop.path(""))) {
  SessionOptions options;
  options.make_addin = make_addin;
  options.gate.trace = &trace_;
  options.gate.observer = [this](CallKind, const automation::Object&, automation::Member) {
    if (observer_) observer_();
  };
  options.on_failure = [this](std::string_view event, std::string_view text) {
    failures_.push_back(std::string(event) + ": " + std::string(text));
  };
  session_.emplace(std::move(options));
  offer_knowledge_base();
  menu_ = menu_of(*session_);
  if (!preload.empty()) session_->preload(shop.file(preload));
  begin();
}

bool Sitting::menu_is_as_before() {
  return menu_of(*session_) == menu_;
}

void Sitting::offer_knowledge_base() {
  session_->offer("KnowledgeBase", [file = shop_.file(knowledge_base_file),
                                    maker = std::function<automation::Ref()>()]() mutable {
    if (!maker) maker = knowledge_base_maker(file);
    return maker();
  });
}

void Sitting::begin() {
  refused_user_interface_ = refused_user_interface_ || refuses_user_interface(calls_of(trace_.str()));
  trace_.str("");
  failures_.clear();
  error_text_read_ = standard_error().size();
}

Outcome Sitting::end() {
  Outcome outcome{calls_of(without_identifiers(trace_.str())),
                  messages_in(standard_error().substr(error_text_read_)), failures_};
  begin();
  return outcome;
}

void Sitting::refuse(std::size_t call, bool lasting) {
  const std::uint64_t number = session_->gate().calls() + 1 + call;
  session_->gate().refuse(number, lasting ? UINT64_MAX : number);
}

void Sitting::refuse_nothing() {
  session_->gate().refuse(0, 0);
}

std::vector<std::string> Sitting::take_down() {
  std::vector<std::string> findings;
  session_->take_down();
  begin();
  const std::string left = session_->gate().left_behind();
  if (!left.empty()) findings.push_back("left behind: " + left);
  if (!refused_user_interface_ && !session_->application().tool_bars->bars.empty())
    findings.emplace_back(toolbar_left);
  if (!refused_user_interface_ && !menu_is_as_before()) findings.emplace_back(menu_left);
  session_.reset();
  const std::size_t files_open = open_files(shop_.path(""));
  if (files_open > files_open_) findings.emplace_back("a file is still open");
  return findings;
}

Stand::Stand(const Place& place) : shop_(place), make_addin_(place.load(shop_.component())) {
  for (int round = 0; round < 2; ++round) {  // the second one finds its rows in the knowledge base
    Sitting sitting(shop_, make_addin_);
    sitting.session().connect();
    sitting.open("turret.json");
    sitting.session().command(1);
    sound_ = after(sitting);
    require_soundness();
    sitting.take_down();
  }
  shop_.keep_knowledge_base();
}

// What a refused run is compared with has to be right by itself.
void Stand::require_soundness() const {
  const auto require = [](bool holds, const char* what) {
    if (!holds) throw automation::Failure(std::string("a sound session goes wrong: ") + what);
  };
  require(sound_.failures.empty(), "an import hands back a failure");
  require(sound_.messages.empty(), "an import shows a message");
  require(sound_.document.find("Mill D10#200") != std::string::npos, "an import makes no tool");
  require(sound_.before_import.is_sound(), "a changed tool isn't followed");
  require(sound_.behind_import.is_sound(), "a changed tool isn't followed behind an import");
}

Stand::Followed Stand::followed(Sitting& sitting, const char* length) {
  Session& session = sitting.session();
  Followed seen;
  static_cast<void>(session.command_ui(0));  // what is due of changes before
  sitting.begin();
  static_cast<void>(session.command_ui(0));
  seen.idle_state = calls_in(sitting.end());
  session.modify("Turning#100", {{"ToolLength", length}});
  seen.change = calls_in(sitting.end());
  static_cast<void>(session.command_ui(0));
  seen.first_state = calls_in(sitting.end());
  static_cast<void>(session.command_ui(0));
  seen.second_state = calls_in(sitting.end());
  return seen;
}

Stand::After Stand::after(Sitting& sitting) {
  // What is open is closed before the shop's knowledge base is replaced.
  sitting.session().offer("KnowledgeBase", {});
  shop_.reset();
  sitting.offer_knowledge_base();
  sitting.refuse_nothing();
  sitting.observe({});
  After seen;
  Session& session = sitting.session();
  if (session.document()) session.close();
  sitting.open("small.json");
  seen.before_import = followed(sitting, "80");
  session.command(1);
  Outcome import = sitting.end();
  seen.behind_import = followed(sitting, "81");
  session.save(shop_.file("after.json"));
  seen.document = without_identifiers(shop_.read("after.json"));
  sitting.begin();
  session.close();
  seen.calls_of_close = calls_in(sitting.end());
  seen.messages = std::move(import.messages);
  seen.failures = std::move(import.failures);
  return seen;
}

std::vector<std::string> Stand::works_as_before(Sitting& sitting) {
  const After seen = after(sitting);
  std::vector<std::string> findings;
  const auto compare = [&](bool same, const char* what) {
    if (!same) findings.push_back(std::string("afterwards ") + what);
  };
  compare(seen.failures == sound_.failures, "an import hands back a failure");
  compare(seen.messages == sound_.messages, "an import shows other messages");
  compare(seen.document == sound_.document, "an import gives another document");
  compare(seen.before_import == sound_.before_import, "a changed tool isn't followed as before");
  compare(seen.behind_import == sound_.behind_import,
          "a tool changed behind an import isn't followed as before");
  compare(seen.calls_of_close == sound_.calls_of_close, "the document's events are bound otherwise");
  return findings;
}

void Stand::end_well(Sitting& sitting, Report& report) {
  for (std::string& finding : works_as_before(sitting)) report.findings.push_back(std::move(finding));
  for (std::string& finding : sitting.take_down()) report.findings.push_back(std::move(finding));
}

}  // namespace deskhost::check
