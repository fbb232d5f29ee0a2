#include "end_to_end/desk.h"

#include "component/connect_object.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/model/application.h"
#include "deskhost/model/document.h"
#include "deskhost/model/tools.h"
#include "deskhost/session/trace.h"
#include "formats/export_fields.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "platform/message_box.h"

namespace end_to_end {

Desk::Desk() {
  settings_file_ =
      std::filesystem::path(platform::native_path(platform::component_folder())) / "QVEsprit.cfg";
  std::filesystem::remove(settings_file_);
  const std::string root = folder.file("");
  std::filesystem::create_directories(folder.file("models"));
  variables_.emplace_back("QVEspritInstallPath", root);
  for (const char* name : {"QVEspritExportPath", "QVMakeListPath"}) {
    variables_.emplace_back(name, root.substr(0, root.size() - 1));
  }
  variables_.emplace_back("QVEspritUserModelsPath", folder.file("models"));
  platform::set_message_sink([this](std::string_view text, std::string_view title, platform::Icon) {
    messages.push_back((title == "QVEsprit" ? "" : std::string(title) + ": ") + std::string(text));
  });
  program("QVMakeList.exe", "");
  folder.write("QV-Esprit-KB-Integration.csv", "");
}

Desk::~Desk() {
  end();
  platform::set_message_sink({});
  std::filesystem::remove(settings_file_);
}

void Desk::start(std::uint64_t fail_call) {
  end();
  trace_text.str("");
  messages.clear();
  failures.clear();
  deskhost::SessionOptions options;
  options.make_addin = component::make_connect_object;
  options.gate.trace = &trace_text;
  options.gate.fail_call = fail_call;
  options.gate.observer = [this](deskhost::CallKind, const automation::Object& target,
                                 automation::Member member) {
    if (refused.empty()) return;
    if (refused.contains(deskhost::trace_name_of(target) + "." + std::string(member.name()))) {
      throw automation::Failure("refused");
    }
  };
  options.on_failure = [this](std::string_view event, std::string_view text) {
    failures.push_back(std::string(event) + ": " + std::string(text));
  };
  session.emplace(std::move(options));
  session->offer("KnowledgeBase", deskhost::knowledge_base_maker(folder.file("knowledge-base.db")));
  session->connect();
}

void Desk::end() {
  if (!session) return;
  session->take_down();
  EXPECT_EQ(session->gate().left_behind(), "");
  EXPECT_EQ(component::objects_alive(), 0);
  session.reset();
}

void Desk::open(const nlohmann::json& document) {
  session->open(folder.write("document.json", document.dump()));
}

void Desk::exporter_writes(const std::vector<std::string>& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += line + "\r\n";
  folder.write("to-export.csv", bytes);
  exporter_hands_out("to-export.csv");
}

void Desk::exporter_hands_out(const std::string& name) {
  exporter_runs("copy\t" + folder.file(name) + "\t" + folder.file("QV-Esprit-Export.csv"));
}

void Desk::exporter_runs(const std::string& instructions) {
  program("QV-ToolExport.exe", instructions);
}

void Desk::program(const std::string& name, const std::string& instructions) {
  testing_support::make_program(folder.file(name), instructions);
}

void Desk::settings(const std::string& text) {
  std::ofstream(settings_file_, std::ios::binary) << "[Default]\r\n" << text;
}

host::Document Desk::document() const {
  return host::Document(session->document());
}

std::string Desk::value(const std::string& id, const std::string& parameter) const {
  try {
    return tool(id).ToolParameters().Item(parameter).Value().to_text();
  } catch (const automation::Failure&) {
    return "<none>";
  }
}

std::vector<std::string> Desk::tool_ids() const {
  std::vector<std::string> ids;
  for (const host::Tool& each : document().Tools().all()) ids.push_back(each.Name());
  return ids;
}

std::vector<nlohmann::json> Desk::trace() const {
  std::vector<nlohmann::json> lines;
  std::istringstream text(trace_text.str());
  for (std::string line; std::getline(text, line);) lines.push_back(nlohmann::json::parse(line));
  return lines;
}

std::string export_line(const std::vector<std::pair<std::size_t, std::string>>& fields) {
  std::vector<std::string> all(formats::field_count);
  for (const auto& [index, text] : fields) all.at(index) = text;
  std::string line;
  for (std::size_t i = 0; i < all.size(); ++i) line += (i == 0 ? "" : ";") + all[i];
  return line;
}

}  // namespace end_to_end
