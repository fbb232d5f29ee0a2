#include "toollist/mQuorvexList.h"

#include <array>
#include <cmath>
#include <string>

#include "automation/number.h"
#include "formats/tool_list.h"
#include "foundation/at_end.h"
#include "foundation/global.h"
#include "foundation/mDatei.h"
#include "toollist/list_file.h"
#include "toollist/material_code.h"
#include "toollist/messages.h"
#include "toollist/roads.h"

namespace mQuorvexList {
namespace {

namespace tool_list = formats::tool_list;

/// A header line whose value is a machine setup parameter: the line's name is the key of the setting that
/// tells the parameter's number.
struct HeaderValue {
  const char* name;
  const char* default_number;
};
enum : std::size_t { ident, descript, machine_name, machine_nr, who, ncp };
constexpr std::array<HeaderValue, 6> header_values{{
    {"ToolListsIdent", "328"},
    {"ToolListsDescript", "462"},
    {"MachineName", "1592"},
    {"MachineNr", "1570"},
    {"ToolListsWho", "1593"},
    {"ToolListsNCP", "155"},
}};
using ParameterNumbers = std::array<std::int32_t, header_values.size()>;

/// Unlike elsewhere a fraction isn't rounded: a number that was mistyped would point at another parameter.
std::int32_t whole_number(const std::string& text) {
  const double number = automation::Value(text).to_double();
  if (number != std::trunc(number)) throw automation::Failure(automation::Error::type_mismatch);
  return automation::to_int32(number);
}

ParameterNumbers read_parameter_numbers() {
  ParameterNumbers numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const HeaderValue& line = header_values[i];
    numbers[i] = whole_number(global::setting(line.name, line.default_number));
  }
  return numbers;
}

std::string quoted(std::string_view value) {
  return '"' + std::string(value) + '"';
}

class Header {
 public:
  Header(const host::Document& document, const host::CustomProperties& properties,
         const ParameterNumbers& numbers)
      : document_(document), properties_(properties), numbers_(numbers) {}

  /// Lines 1 to 14, each value fetched when its line is written.
  void write(Skipping& skipping) const {
    ListFile& list = list_file();
    for (const char* const text : tool_list::head) list.write_line(text);
    list.write_line(line(ident, mDatei::RemoveExtension(value(ident))));
    list.write_line(tool_list::version);
    list.write_line(line(descript, value(descript)));
    write_material(skipping);
    for (const std::size_t which : {machine_name, machine_nr, who, ncp}) {
      skipping.statement([&] { list.write_line(line(which, value(which))); });
    }
    for (const char* const text : tool_list::head_of_rows) {
      skipping.statement([&] { list.write_line(text); });
    }
  }

 private:
  [[nodiscard]] std::string value(std::size_t which) const {
    return global::GetMachineSetupParameter(document_, numbers_[which], 1).to_text();
  }
  static std::string line(std::size_t which, std::string_view value) {
    return std::string(header_values[which].name) + ":" + quoted(value);
  }

  /// From this test on failures are skipped: to the end of the run where the line gets a code, to the end of
  /// the line where it gets none.
  void write_material(Skipping& skipping) const {
    const std::string label = tool_list::material_code;
    skipping.begin();
    if (skipping.test([&] { return equal(properties_.Item("KBM_StandardName").Value(), "None"); })) {
      skipping.statement([&] { list_file().write_line(label); });
      skipping.end();
      return;
    }
    skipping.statement([&] {
      const std::string name = properties_.Item("KBM_PartMaterialConditionName").Value().to_text();
      list_file().write_line(label + quoted(ExtractMaterialCode(name)));
    });
  }

  const host::Document& document_;
  const host::CustomProperties& properties_;
  const ParameterNumbers& numbers_;
};

void write_rows(const host::Document& document, Skipping& skipping) {
  OperatingTimes times(document);
  const auto turrets = [&] { return document.MachineType() == host::machine_with_turrets; };
  if (skipping.test([&] { return is_on_by_default("ToolOutputorderByMillOperation") && !turrets(); })) {
    operation_road(document, times, skipping);
  } else if (skipping.test([&] { return is_on_by_default("ToolOutputorderByLatheStation") && turrets(); })) {
    station_road(document, times, skipping);
  } else {
    document_road(document, times, skipping);
  }
}

void run_list_maker(const std::string& list_path, const Skipping& skipping) {
  // The blank parts program and argument on the command line; as the end of a path it doesn't count.
  const auto program = [] { return global::GetEnvPath("QVEspritInstallPath") + "QVMakeList.exe "; };
  if (skipping.test([&] { return !global::FileExists(program()); })) {
    skipping.statement([&] {
      const std::string text =
          message_text(skipping, "FileExist", "the following file/folder does not exist: ");
      global::show_message(text + program());
    });
  }
  skipping.statement([&] { global::ShellAndWait(program() + list_path, global::window_normal); });
}

}  // namespace

void ExportToolList() {
  const ParameterNumbers numbers = read_parameter_numbers();
  const std::string list_path = global::GetEnvPath("QVMakeListPath") + "\\QVEspritList.tls";
  const host::Document document = global::Application().Document();
  const host::CustomProperties properties = document.CustomProperties();

  Skipping skipping;
  {
    list_file().open(list_path);
    const AtEnd closed([] { skip_failure([] { list_file().close(); }); });  // whatever fails
    Header(document, properties, numbers).write(skipping);
    write_rows(document, skipping);
    skipping.statement([] { list_file().close(); });
  }
  // Beyond any skipping: a list that lacks its end looks like a whole one to the list maker.
  list_file().require_complete();
  run_list_maker(list_path, skipping);
}

}  // namespace mQuorvexList
