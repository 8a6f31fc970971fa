#include "HTMLReport.h"

#include <fmt/format.h>

#include <algorithm>

#include "Plot.h"
#include "ReportWords.h"

namespace TarvaneConformance {

namespace {

// The series run from dark to light, since the columns mostly are rates in their order.
constexpr const char* style = R"(
:root { color-scheme: light dark; --text: #1c2126; --faint: #65707a; --line: #d5dade; --page: #fff;
  --band: #2e8b571c; --edge: #2e8b57; --bad: #c62828; --warn: #a15c00;
  --s0: #0b3c5d; --s1: #1b6ca8; --s2: #3d9be0; --s3: #7b5ea7; --s4: #c2578f; --s5: #e07a3d; }
@media (prefers-color-scheme: dark) { :root { --text: #e4e8eb; --faint: #98a3ad; --line: #3a424a;
  --page: #15191d; --band: #4caf7a24; --edge: #4caf7a; --bad: #ff6f61; --warn: #ffb454;
  --s0: #cfe8ff; --s1: #8cc8ff; --s2: #4aa3f0; --s3: #b79be0; --s4: #ec8fbc; --s5: #f3a36b; } }
body { font: 15px/1.5 system-ui, sans-serif; color: var(--text); background: var(--page);
  max-width: 60rem; margin: 2rem auto; padding: 0 1rem; }
h1, h2, h3 { line-height: 1.2; } h2 { margin-top: 3rem; border-bottom: 1px solid var(--line); }
h3 { margin-top: 2rem; } .faint { color: var(--faint); }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-variant-numeric: tabular-nums; font-size: 13px; }
th, td { padding: 2px 10px; text-align: right; white-space: nowrap; }
th { border-bottom: 1px solid var(--line); position: sticky; top: 0; background: var(--page); }
th:first-child, td:first-child, td.words { text-align: left; }
tr:nth-child(even) td { background: color-mix(in srgb, var(--line) 22%, transparent); }
td.within { color: var(--edge); } td.outside { color: var(--bad); font-weight: 700; }
td.exception { color: var(--warn); }
svg { display: block; width: 100%; height: auto; margin: 0.5rem 0; }
svg text { font-size: 11px; fill: var(--faint); }
.grid { stroke: var(--line); } polyline { fill: none; stroke-width: 1.5; }
polyline.limits { stroke: var(--edge); stroke-dasharray: 4 3; } rect.limits { fill: var(--band); }
.legend span { margin-right: 1.2em; white-space: nowrap; }
.legend i { display: inline-block; width: 14px; height: 3px; margin-right: 5px; vertical-align: middle; }
)";

std::string seriesStyle() {
    std::string css;
    for (int i = 0; i < seriesCount; ++i) {
        css += fmt::format(
            "polyline.series{0} {{ stroke: var(--s{0}); }} circle.series{0} {{ fill: var(--s{0}); "
            "}} "
            "i.series{0} {{ background: var(--s{0}); }}\n",
            i);
    }
    return css;
}

std::string paragraph(const std::string& text) {
    return "<p>" + escaped(text) + "</p>\n";
}

std::string list(const std::vector<std::string>& sentences) {
    std::string html = "<ul>\n";
    for (const std::string& sentence : sentences) {
        html += "<li>" + escaped(sentence) + "</li>\n";
    }
    return html + "</ul>\n";
}

const char* verdictClass(Verdict verdict) {
    switch (verdict) {
        case Verdict::none:
            return "";
        case Verdict::within:
            return "within";
        case Verdict::outside:
            return "outside";
        case Verdict::knownException:
            return "exception";
    }
    return "";
}

std::string legend(const Table& table) {
    std::string html = "<p class=\"legend faint\">";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        html += fmt::format("<span><i class=\"series{}\"></i>{}</span>", i % seriesCount,
                            escaped(table.columns[i]));
    }
    const bool hasGoals =
        std::ranges::any_of(table.rows, [](const Row& row) { return row.goal.has_value(); });
    return html + (hasGoals ? "departure from the goal, " : "") + escaped(table.unit) + "</p>\n";
}

std::string tableOf(const Table& table) {
    std::string html = "<h3>" + escaped(table.title) + "</h3>\n<p class=\"faint\">" +
                       escaped(table.clause) + "</p>\n" + paragraph(table.text);
    const std::string plot = plotOf(table);
    if (!plot.empty()) {
        html += plot + "\n" + legend(table);
    }
    html += "<div class=\"scroll\"><table>\n<tr>";
    const std::vector<std::string> headings = headingsOf(table);
    for (const std::string& heading : headings) {
        html += "<th>" + escaped(heading) + "</th>";
    }
    html += "</tr>\n";
    const auto verdictAt = static_cast<std::size_t>(verdictColumn(table));
    for (const Row& row : table.rows) {
        html += "<tr>";
        const std::vector<std::string> cells = cellsOf(table, row);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const bool isRemark = headings[i] == "Remark";
            const char* const kind = i == verdictAt ? verdictClass(row.verdict())
                                     : isRemark     ? "words"
                                                    : "";
            html += fmt::format("<td{}>{}</td>", *kind ? fmt::format(" class=\"{}\"", kind) : "",
                                escaped(cells[i]));
        }
        html += "</tr>\n";
    }
    return html + "</table></div>\n";
}

}  // namespace

std::string htmlReport(const std::vector<Chapter>& chapters, const Build& build) {
    std::string html = fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n<meta "
        "name=\"viewport\" "
        "content=\"width=device-width\">\n<title>Tarvane: "
        "{0}</title>\n<style>{1}{2}</style></head>\n"
        "<body>\n<h1>{0}</h1>\n",
        reportTitle, style, seriesStyle());
    html += paragraph(reportText);
    html += "<p class=\"faint\">" + escaped(buildLine(build)) + "</p>\n";
    html += "<p><strong>" + escaped(summaryOf(countOf(chapters))) + "</strong></p>\n";
    html += "<h2>Known exceptions</h2>\n" + list(exceptionsOf(chapters));
    for (const Chapter& chapter : chapters) {
        html += "<h2>" + escaped(chapter.title) + "</h2>\n" + paragraph(chapter.text);
        for (const Table& table : chapter.tables) {
            html += tableOf(table);
        }
    }
    return html + "</body></html>\n";
}

}  // namespace TarvaneConformance
