#include "import/mQuorvex.h"

#include <optional>
#include <string>

#include "formats/export_file.h"
#include "foundation/at_end.h"
#include "foundation/global.h"
#include "host/create.h"
#include "import/document_tools.h"
#include "import/follow_up.h"
#include "import/parameter_mapping.h"
#include "import/tool_record.h"
#include "knowledgebase/KBM.h"
#include "platform/files.h"

namespace mQuorvex {
namespace {

using automation::Failure;
using formats::ExportFile;

/// A tool of a line, and whether it was made for it.
struct Target {
  host::ToolParameters tool;
  bool is_new;
};

Target find_or_make(DocumentTools& tools, const ToolRecord& record) {
  const host::Tool found = tools.FindToolById(record.text(field_tool_id));
  if (!found.is_nothing()) return {found.ToolParameters(), false};
  constexpr std::int32_t unit_of_new_tools = 71;
  const host::ToolFactory factory = host::new_tool_factory();
  const std::int32_t tool_class = automation::Value(record.text(field_tool_class)).to_int32();
  return {factory.Create(tool_class, unit_of_new_tools), true};
}

/// Puts the tool into the document unless it is there; a view of nothing where the host refuses.
host::Tool put_into_document(DocumentTools& tools, shapes::MachineView& machine,
                             const host::ToolParameters& tool, const std::string& id) {
  host::Tool in_document;
  skip_failure([&] { in_document = tools.M_Tools().Item(id); });
  if (!in_document.is_nothing()) return host::Tool(tool.ref());
  bool is_added = false;
  skip_failure([&] {
    machine.document().Tools().Add(tool);
    is_added = true;
  });
  skip_failure([&] { in_document = tools.M_Tools().Item(id); });
  if (is_added) tools.added(in_document);
  return in_document;
}

/// Finds or makes the tool of the line (a failure there goes to the caller) and gives it all that the line
/// says; from then on a failing step is dropped.
void build_tool(DocumentTools& tools, shapes::MachineView& machine, const ToolRecord& record) {
  machine.begin_line();
  const Target target = find_or_make(tools, record);
  WriteToolParameters(target.tool, target.is_new, record, tools, machine);
  FinishImportedTool(put_into_document(tools, machine, target.tool, record.text(field_tool_id)), record,
                     machine);
  if (!target.is_new) tools.changed_found();
}

bool look_up_material(ToolRecord& record) {
  try {
    record.material = KBM::GetCutterMaterialId(record.text(field_tool_material));
    return true;
  } catch (const Failure&) {
    return false;
  }
}

/// The text of the format message. On the first line it is all or nothing; later it is looked up statement by
/// statement, as the rest of a line's work is.
std::optional<std::string> wrong_format_text(bool is_first_line) {
  bool all_passed = true;
  const auto zone = [&](auto&& step) {
    bool passed = false;
    skip_failure([&] { step(), passed = true; });
    all_passed &= passed;
  };
  std::string text;
  const clsIniFile& reader = global::open_texts("MSG", zone);
  zone([&] { text = reader.GetString("ErrFormat", " wrong Format!"); });
  if (is_first_line && !all_passed) return {};
  return text;
}

}  // namespace

void ImportTools() {
  global::ToolImportRunning() = true;
  const AtEnd flag_falls([] { global::ToolImportRunning() = false; });
  std::optional<DocumentTools> tools;
  std::optional<ExportFile> file;
  std::string path;
  try {
    tools.emplace(global::Application().Document().Tools());
    path = global::GetEnvPath("QVEspritExportPath") + "\\QV-Esprit-Export.csv";
    if (global::FileExists(path)) platform::delete_file(path);
    global::ShellAndWait(global::GetEnvPath("QVEspritInstallPath") + "QV-ToolExport.exe",
                         global::window_normal);
    file.emplace(platform::read_file(path));
  } catch (const Failure& failure) {
    global::show_message(std::string(failure.what()) + " " + path);
    return;
  }

  shapes::MachineView machine;
  bool first = true;
  while (file->next_data_line()) {
    // Before the first tool a failure counts as the end of the file; later the line goes on without it.
    if (file->fields().count() < field_count) {
      const std::optional<std::string> text = wrong_format_text(first);
      if (!text) break;
      global::show_message(*text + path);
      return;
    }
    ToolRecord record(file->fields());
    if (!look_up_material(record) && first) break;
    first = false;
    build_tool(*tools, machine, record);
  }

  skip_failure([] { global::Application().Document().Refresh(); });
  tools.reset();
  KBM::ImportSpeedsAndFeeds();
}

}  // namespace mQuorvex
