#include "import/mQuorvex.h"

#include <optional>
#include <string>

#include "foundation/failures.h"
#include "foundation/global.h"
#include "host/create.h"
#include "import/export_file.h"
#include "import/follow_up.h"
#include "import/parameter_mapping.h"
#include "import/tool_index.h"
#include "import/tool_record.h"
#include "knowledgebase/KBM.h"
#include "platform/files.h"

namespace mQuorvex {
namespace {

using automation::Failure;

class ImportRunning {
 public:
  ImportRunning() { global::ToolImportRunning = true; }
  ~ImportRunning() { global::ToolImportRunning = false; }
  ImportRunning(const ImportRunning&) = delete;
  ImportRunning& operator=(const ImportRunning&) = delete;
};

/// What lives for one run: the document's tools and what is known of them.
class Run {
 public:
  explicit Run(const host::Tools& tools) : tools_(tools), walk_(tools), index_(walk_), numbers_(walk_) {}

  /// Finds or makes the tool of the line (a failure there goes to the caller) and gives it all that the line
  /// says; from then on a failing step is dropped.
  void build_tool(const ToolRecord& record);

 private:
  struct Target {
    host::ToolParameters tool;
    bool is_new;
    std::size_t position;  // of a tool that the document has
  };
  Target find_or_make(const ToolRecord& record);
  /// Puts the tool into the document unless it is there; a view of nothing where the host refuses.
  host::Tool place_in_document(const host::ToolParameters& tool, const std::string& id);

  host::Tools tools_;
  ToolWalk walk_;
  ToolIndex index_;
  NumbersInUse numbers_;
};

Run::Target Run::find_or_make(const ToolRecord& record) {
  const ToolIndex::Found found = index_.find(record.text(field_tool_id));
  if (!found.tool.is_nothing()) return {found.tool.ToolParameters(), false, found.position};
  constexpr std::int32_t unit_of_new_tools = 71;
  const host::ToolFactory factory = host::new_tool_factory();
  const std::int32_t tool_class = automation::Value(record.text(field_tool_class)).to_int32();
  return {factory.Create(tool_class, unit_of_new_tools), true, 0};
}

host::Tool Run::place_in_document(const host::ToolParameters& tool, const std::string& id) {
  host::Tool in_document;
  skip_failure([&] { in_document = tools_.Item(id); });
  if (!in_document.is_nothing()) return host::Tool(tool.ref());
  bool added = false;
  skip_failure([&] {
    global::Application().Document().Tools().Add(tool);
    added = true;
  });
  if (added) walk_.append(host::Tool(tool.ref()));
  skip_failure([&] { in_document = tools_.Item(id); });
  return in_document;
}

void Run::build_tool(const ToolRecord& record) {
  const Target target = find_or_make(record);
  WriteToolParameters(target.tool, target.is_new, record, numbers_);
  FinishImportedTool(place_in_document(target.tool, record.text(field_tool_id)), record);
  if (!target.is_new) {
    index_.changed(target.position);
    numbers_.changed(target.position);
  }
}

bool look_up_material(ToolRecord& record) {
  try {
    record.material = KBM::GetCutterMaterialId(record.text(field_tool_material));
    return true;
  } catch (const Failure&) {
    return false;
  }
}

bool text_file_is_known() {
  try {
    (void)global::GetTextFileName();
    return true;
  } catch (const Failure&) {
    return false;
  }
}

// The text of the format message, looked up statement by statement as the rest of a line's work is.
std::string wrong_format_text() {
  std::string text;
  clsIniFile& reader = global::text_reader();
  skip_failure([&] { reader.FileName(global::GetTextFileName()); });
  skip_failure([&] { reader.SectionName("MSG"); });
  skip_failure([&] { text = reader.GetString("ErrFormat", " wrong Format!"); });
  return text;
}

}  // namespace

void ImportTools() {
  const ImportRunning running;
  std::optional<Run> run;
  std::optional<ExportFile> file;
  std::string path;
  try {
    run.emplace(global::Application().Document().Tools());
    path = global::GetEnvPath("QVEspritExportPath") + "\\QV-Esprit-Export.csv";
    if (global::FileExists(path)) platform::delete_file(path);
    global::ShellAndWait(global::GetEnvPath("QVEspritInstallPath") + "QV-ToolExport.exe",
                         global::window_normal);
    file.emplace(platform::read_file(path));
  } catch (const Failure& failure) {
    global::show_message(std::string(failure.what()) + " " + path);
    return;
  }

  bool first = true;
  while (file->next_data_line()) {
    // Before the first tool a failure counts as the end of the file; later the line goes on without it.
    if (file->fields().count() < field_count) {
      if (first && !text_file_is_known()) break;
      global::show_message(wrong_format_text() + path);
      return;
    }
    ToolRecord record(file->fields());
    if (!look_up_material(record) && first) break;
    first = false;
    run->build_tool(record);
  }

  skip_failure([] { global::Application().Document().Refresh(); });
  run.reset();
  KBM::ImportSpeedsAndFeeds();
}

}  // namespace mQuorvex
