#include "deskhost/inspect/page.h"

#include "deskhost/picture/svg.h"

namespace deskhost::inspect {
namespace {

constexpr std::string_view style_sheet = R"(
:root { color-scheme: light dark; --ink: #1c2430; --soft: #5d6a7a; --paper: #ffffff; --rule: #d4dae2; --head: #eef1f5;
  --error: #b42318; --warning: #9a5b00; --note: #1d5fa8; --mark: #fde3d3; }
@media (prefers-color-scheme: dark) { :root { --ink: #e6eaf0; --soft: #9aa7b6; --paper: #14181e; --rule: #343d49;
  --head: #1f262f; --error: #ff8a80; --warning: #f0b35a; --note: #7db4f0; --mark: #5a2d12; } }
body { font: 14px/1.45 system-ui, "DejaVu Sans", sans-serif; color: var(--ink); background: var(--paper);
  max-width: 1180px; margin: 24px auto; padding: 0 16px; }
h1 { font-size: 22px; margin: 0 0 4px; }
h2 { font-size: 17px; margin: 28px 0 8px; border-bottom: 1px solid var(--rule); padding-bottom: 4px; }
p { margin: 4px 0; }
table { border-collapse: collapse; width: 100%; margin: 8px 0; }
th { text-align: left; white-space: nowrap; background: var(--head); font-weight: 600; }
th, td { padding: 4px 8px; border-bottom: 1px solid var(--rule); vertical-align: top; overflow-wrap: break-word; }
svg { display: block; width: 100%; max-width: 1000px; height: auto; margin: 8px auto; }
mark { background: var(--mark); color: inherit; padding: 0 3px; border-radius: 3px; }
.i-summary { font-size: 16px; font-weight: 600; }
th.i-right, .i-right { text-align: right; font-variant-numeric: tabular-nums; }
.i-value { font-family: "DejaVu Sans Mono", monospace; font-size: 12px; overflow-wrap: anywhere; min-width: 5em; }
.i-error { color: var(--error); font-weight: 700; }
.i-warning { color: var(--warning); font-weight: 700; }
.i-note { color: var(--note); }
@media print { body { max-width: none; margin: 0; font-size: 11px; } tr, svg { break-inside: avoid; }
  h2 { break-after: avoid; } thead { display: table-header-group; } @page { size: A4 landscape; margin: 12mm; } }
)";

std::string element(std::string_view name, std::string_view content, std::string_view style = {}) {
  const std::string attribute = style.empty() ? "" : " class=\"" + std::string(style) + "\"";
  return "<" + std::string(name) + attribute + ">" + std::string(content) + "</" + std::string(name) + ">";
}

}  // namespace

std::string text_in_html(std::string_view text) {
  return escaped(text);
}

Page::Page(std::string_view title) : title_(escaped(title)) {
  body_ = element("h1", title_) + "\n";
}

void Page::heading(std::string_view text) {
  body_ += element("h2", escaped(text)) + "\n";
}

void Page::paragraph(std::string_view text) {
  body_ += element("p", escaped(text)) + "\n";
}

void Page::summary(std::string_view text) {
  body_ += element("p", escaped(text), "i-summary") + "\n";
}

void Page::open_table(std::initializer_list<Cell> headings) {
  body_ += "<table>\n<thead><tr>";
  for (const Cell& heading : headings) body_ += element("th", escaped(heading.text), heading.style);
  body_ += "</tr></thead>\n<tbody>\n";
}

void Page::row(std::initializer_list<Cell> cells) {
  body_ += "<tr>";
  for (const Cell& cell : cells) body_ += element("td", escaped(cell.text), cell.style);
  body_ += "</tr>\n";
}

void Page::raw_row(std::string_view heading, std::string_view left, std::string_view right) {
  body_ += "<tr>" + element("td", escaped(heading), "i-right") + element("td", left) + element("td", right) +
           "</tr>\n";
}

void Page::close_table() {
  body_ += "</tbody>\n</table>\n";
}

std::string Page::html() const {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
         title_ + "</title>\n<style>" + std::string(Svg::style_sheet()) + std::string(style_sheet) +
         "</style>\n</head>\n<body>\n" + body_ + "</body>\n</html>\n";
}

}  // namespace deskhost::inspect
