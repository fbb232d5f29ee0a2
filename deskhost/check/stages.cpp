#include "deskhost/check/stages.h"

namespace deskhost::check {
namespace {

bool is(const Call& call, std::string_view on, std::string_view member) {
  return call.on == on && call.member == member;
}

bool is_tool(const Call& call) {
  return call.on.starts_with("Tool(");
}

bool is_by_id(const Call& call) {
  return is(call, "Tools", "Item") && call.args.starts_with("[\"");
}

bool adds(const Call& call) {
  return is(call, "Application", "Document") || is(call, "Document", "Tools") || is(call, "Tools", "Add") ||
         is_by_id(call);
}

// The text of the next statement for the knowledge base.
std::string_view next_statement(const std::vector<Call>& calls, std::size_t from) {
  for (std::size_t i = from; i < calls.size(); ++i) {
    if (calls[i].member == "Execute") return calls[i].args;
  }
  return {};
}

// A line begins with its material, whose standard is the add-in's own; a base that is refused gets no
// statement.
bool begins_line(const std::vector<Call>& calls, std::size_t i, Stage stage) {
  if (calls[i].refused) return stage == Stage::start || stage == Stage::store;
  return next_statement(calls, i).find("'Quorvex CC'") != std::string_view::npos;
}

Stage next_stage(const std::vector<Call>& calls, std::size_t i, Stage stage) {
  const Call& call = calls[i];
  if (i > 0 && is(calls[i - 1], "Document", "Refresh")) return Stage::speeds;
  if (call.is_event || stage == Stage::speeds) return stage;
  if (call.op == "create" && call.on.ends_with("KnowledgeBase")) {
    return begins_line(calls, i, stage) ? Stage::material : Stage::store;
  }
  if (stage == Stage::material && (call.on == "Tools" || is_tool(call) || call.op == "create"))
    return Stage::find;
  if (stage == Stage::find && is_tool(call) && call.args == R"(["ToolStyle"])") return Stage::build;
  if (stage == Stage::build && is_by_id(call)) return Stage::add;
  if (stage == Stage::add && !adds(call)) return Stage::follow;
  return stage;
}

}  // namespace

std::vector<Step> steps_of_import(const std::vector<Call>& calls) {
  std::vector<Step> steps;
  Step step;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const Stage stage = next_stage(calls, i, step.stage);
    if (stage == Stage::material && step.stage != stage) ++step.line;
    step.stage = stage;
    steps.push_back(step);
  }
  return steps;
}

}  // namespace deskhost::check
