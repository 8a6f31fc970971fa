#include "Shell/Help/Prose.h"

#include "Displays/RawText.h"

namespace TarvaneApp {

namespace {

constexpr std::string_view mark = "**";

void append(std::vector<ProseRun>& runs, std::string_view text, bool isBold) {
    if (text.empty()) {
        return;
    }
    if (!runs.empty() && runs.back().isBold == isBold) {
        runs.back().text += utf8Text(text);
    } else {
        runs.push_back({utf8Text(text), isBold});
    }
}

}  // namespace

std::vector<ProseRun> prose(std::string_view text) {
    std::vector<ProseRun> runs;
    while (!text.empty()) {
        const std::size_t begin = text.find(mark);
        const std::size_t end =
            begin == std::string_view::npos ? begin : text.find(mark, begin + mark.size());
        if (end == std::string_view::npos) {
            append(runs, text, false);
            break;
        }
        const std::string_view bold = text.substr(begin + mark.size(), end - begin - mark.size());
        // Asterisks around nothing make no word bold.
        append(runs, text.substr(0, bold.empty() ? end + mark.size() : begin), false);
        append(runs, bold, true);
        text.remove_prefix(end + mark.size());
    }
    return runs;
}

QString plainProse(std::string_view text) {
    QString plain;
    for (const ProseRun& run : prose(text)) {
        plain += run.text;
    }
    return plain;
}

QString proseHTML(std::string_view text, const QColor& boldColor) {
    QString html;
    for (const ProseRun& run : prose(text)) {
        const QString escaped = run.text.toHtmlEscaped();
        html += run.isBold ? QStringLiteral("<span style=\"font-weight:600; color:%1\">%2</span>")
                                 .arg(boldColor.name(), escaped)
                           : escaped;
    }
    return QStringLiteral("<span style=\"white-space:pre-wrap\">") + html +
           QStringLiteral("</span>");
}

}  // namespace TarvaneApp
