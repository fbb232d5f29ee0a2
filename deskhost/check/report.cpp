#include "deskhost/check/report.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "deskhost/picture/svg.h"

namespace deskhost::check {

std::size_t findings_in(const std::vector<LevelResult>& levels) {
  std::size_t count = 0;
  for (const LevelResult& level : levels) count += level.results.findings.size();
  return count;
}

std::string checks_of(const Finding& finding) {
  std::string text = finding.set + ":" + std::to_string(finding.first);
  if (finding.end > finding.first + 1) text += "-" + std::to_string(finding.end - 1);
  return text;
}

void write_json(const std::vector<LevelResult>& levels, std::uint64_t seed, std::ostream& out) {
  nlohmann::ordered_json page{{"seed", seed}, {"levels", nlohmann::ordered_json::array()}};
  for (const LevelResult& level : levels) {
    nlohmann::ordered_json findings = nlohmann::ordered_json::array();
    for (const Finding& finding : level.results.findings)
      findings.push_back({{"checks", checks_of(finding)}, {"text", finding.text}});
    const Counts& counts = level.results.counts;
    page["levels"].push_back({{"level", level.strictness},
                              {"title", level.title},
                              {"checks", counts.checks},
                              {"single_refusals", counts.single},
                              {"lasting_refusals", counts.lasting},
                              {"seconds", level.seconds},
                              {"findings", std::move(findings)}});
  }
  out << page.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

void write_junit(const std::vector<LevelResult>& levels, std::ostream& out) {
  const auto failed =
      std::ranges::count_if(levels, [](const LevelResult& level) { return !level.results.findings.empty(); });
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"deskhost check\" tests=\""
      << levels.size() << "\" failures=\"" << failed << "\">\n";
  for (const LevelResult& level : levels) {
    out << "  <testcase classname=\"deskhost.check\" name=\"" << level.strictness << " "
        << escaped(level.title) << "\" time=\"" << level.seconds << "\">\n";
    if (!level.results.findings.empty()) {
      out << "    <failure message=\"" << level.results.findings.size() << " findings\">";
      for (const Finding& finding : level.results.findings)
        out << escaped(checks_of(finding) + ": " + finding.text) << '\n';
      out << "</failure>\n";
    }
    out << "  </testcase>\n";
  }
  out << "</testsuite>\n";
}

}  // namespace deskhost::check
