#include "TextReport.h"

#include <algorithm>
#include <string_view>

#include "ReportWords.h"

namespace TarvaneConformance {

namespace {

constexpr std::size_t lineWidth = 100;

constexpr const char* sourceText =
    "`Scripts/conformance` measures anew and also draws it, as a page. A test fails when these "
    "tables "
    "are no longer what is measured; `Scripts/conformance --renew` writes them.";

// Characters, of a text in UTF-8.
std::size_t widthOf(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

void appendParagraph(std::string& out, std::string_view text, std::string_view indent = "") {
    std::size_t used = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        if (used > 0 && used + 1 + widthOf(word) > lineWidth) {
            out += '\n';
            out += indent;
            used = indent.size();
        } else if (used > 0) {
            out += ' ';
            ++used;
        }
        out += word;
        used += widthOf(word);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    out += "\n\n";
}

void appendList(std::string& out, const std::vector<std::string>& sentences) {
    for (const std::string& sentence : sentences) {
        out += "- ";
        appendParagraph(out, sentence, "  ");
        out.pop_back();
    }
    out += '\n';
}

void appendLine(std::string& out, const std::vector<std::string>& cells,
                const std::vector<std::size_t>& widths) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - widthOf(cells[i]), ' ');
        // Figures line up at their right ends, words at their left.
        const bool isFigure =
            i > 0 && cells[i].find_first_not_of("-0123456789.") == std::string::npos;
        out += "| " + (isFigure ? padding + cells[i] : cells[i] + padding) + ' ';
    }
    out += "|\n";
}

void appendTable(std::string& out, const Table& table) {
    out += "### " + table.title + "\n\n";
    appendParagraph(out, table.clause + ". " + table.text);
    std::vector<std::vector<std::string>> lines{headingsOf(table)};
    for (const Row& row : table.rows) {
        lines.push_back(cellsOf(table, row));
    }
    std::vector<std::size_t> widths(lines.front().size(), 3);
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(line[i]));
        }
    }
    appendLine(out, lines.front(), widths);
    for (const std::size_t width : widths) {
        out += "|" + std::string(width + 2, '-');
    }
    out += "|\n";
    for (std::size_t i = 1; i < lines.size(); ++i) {
        appendLine(out, lines[i], widths);
    }
    out += '\n';
}

}  // namespace

std::string textReport(const std::vector<Chapter>& chapters, const std::optional<Build>& build) {
    std::string out = std::string("# ") + reportTitle + "\n\n";
    appendParagraph(out, reportText);
    if (build) {
        appendParagraph(out, buildLine(*build));
    } else {
        appendParagraph(out, sourceText);
    }
    appendParagraph(out, summaryOf(countOf(chapters)));
    out += "## Known exceptions\n\n";
    appendList(out, exceptionsOf(chapters));
    for (const Chapter& chapter : chapters) {
        out += "## " + chapter.title + "\n\n";
        appendParagraph(out, chapter.text);
        for (const Table& table : chapter.tables) {
            appendTable(out, table);
        }
    }
    out.pop_back();
    return out;
}

}  // namespace TarvaneConformance
