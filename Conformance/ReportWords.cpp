#include "ReportWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace TarvaneConformance {

const char* const reportTitle = "Conformance";
const char* const reportText =
    "Tarvane's own meters, held against the standards that they follow. Every figure is measured: "
    "the program makes the signal, feeds it to the shipped library in blocks of 256 frames as the "
    "audio server does, and reads what the meter shows. This is about the software alone. A "
    "microphone, its preamplifier and converter have limits of their own, and a class 1 "
    "measurement "
    "needs all of them.";

std::string summaryOf(const Count& count) {
    return fmt::format(
        "{} rows were held against limits: {} are within them, {} are known exceptions, {} are "
        "outside. {} more show a figure that has no limit, and {} weren't measured.",
        count.judged(), count.within, count.knownExceptions, count.outside, count.withoutLimit,
        count.notMeasured);
}

std::string buildLine(const Build& build) {
    return fmt::format("Tarvane {}, vector code for {}.", build.version, build.instructionSet);
}

std::string figure(double value, int decimals) {
    std::string text = fmt::format("{:.{}f}", value, decimals);
    const bool isZero = text.find_first_of("123456789") == std::string::npos;
    return isZero && text.front() == '-' ? text.substr(1) : text;
}

namespace {

std::string signedLimit(double value) {
    const std::string sign = value < 0.0 ? "-" : "+";
    return std::isinf(value) ? sign + "∞" : fmt::format("{:+.1f}", value);
}

template <class Has>
bool anyRow(const Table& table, Has has) {
    return std::ranges::any_of(table.rows, has);
}

bool hasGoals(const Table& table) {
    return anyRow(table, [](const Row& row) { return row.goal.has_value(); });
}

bool hasLimits(const Table& table) {
    return anyRow(table, [](const Row& row) { return row.limits.has_value(); });
}

bool hasRemarks(const Table& table) {
    return anyRow(table, [](const Row& row) { return !row.remark.empty(); });
}

constexpr const char* nothing = "—";

}  // namespace

std::string limitsText(const Row& row) {
    if (!row.limits) {
        return nothing;
    }
    const auto [lower, upper] = *row.limits;
    if (lower == -upper) {
        return fmt::format("±{:.1f}", upper);
    }
    if (row.goal) {
        return signedLimit(upper) + ", " + signedLimit(lower);
    }
    if (std::isinf(upper)) {
        return fmt::format("at least {:.1f}", lower);
    }
    return fmt::format("{} to {}", signedLimit(lower), signedLimit(upper));
}

std::string verdictText(Verdict verdict) {
    switch (verdict) {
        case Verdict::none:
            return nothing;
        case Verdict::within:
            return "within";
        case Verdict::outside:
            return "OUTSIDE";
        case Verdict::knownException:
            return "exception";
    }
    return nothing;
}

std::vector<std::string> headingsOf(const Table& table) {
    std::vector<std::string> headings{table.labelHeading};
    if (hasGoals(table)) {
        headings.push_back("Goal");
    }
    if (hasLimits(table)) {
        headings.push_back("Limits");
    }
    headings.insert(headings.end(), table.columns.begin(), table.columns.end());
    if (hasLimits(table)) {
        headings.push_back("Margin");
        headings.push_back("Verdict");
    }
    if (hasRemarks(table)) {
        headings.push_back("Remark");
    }
    return headings;
}

std::vector<std::string> cellsOf(const Table& table, const Row& row) {
    std::vector<std::string> cells{row.label};
    if (hasGoals(table)) {
        cells.push_back(row.goal ? figure(*row.goal, table.decimals) : nothing);
    }
    if (hasLimits(table)) {
        cells.push_back(limitsText(row));
    }
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        cells.push_back(i < row.measured.size() ? figure(row.measured[i], table.decimals)
                                                : nothing);
    }
    if (hasLimits(table)) {
        const Verdict verdict = row.verdict();
        cells.push_back(verdict == Verdict::none ? nothing : figure(row.margin(), table.decimals));
        cells.push_back(verdictText(verdict));
    }
    if (hasRemarks(table)) {
        cells.push_back(row.remark);
    }
    return cells;
}

int verdictColumn(const Table& table) {
    const auto headings = headingsOf(table);
    const auto found = std::ranges::find(headings, "Verdict");
    return found == headings.end() ? -1 : static_cast<int>(found - headings.begin());
}

std::vector<std::string> exceptionsOf(const std::vector<Chapter>& chapters) {
    std::vector<std::string> sentences;
    for (const Chapter& chapter : chapters) {
        sentences.insert(sentences.end(), chapter.exceptions.begin(), chapter.exceptions.end());
    }
    return sentences;
}

}  // namespace TarvaneConformance
