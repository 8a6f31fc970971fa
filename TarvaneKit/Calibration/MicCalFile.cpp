#include "Calibration/MicCalFile.h"

#include <algorithm>
#include <array>

#include "Core/DecimalNumber.h"
#include "Core/PiecewiseLinear.h"
#include "Core/TextFile.h"

namespace TarvaneKit {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view headerMarks = "\"*#";
constexpr std::string_view sensFactorLabel = "Sens Factor =";
constexpr std::string_view serialNumberLabel = "SERNO:";

// Line ends of Unicode (UAX #14, BK, CR, LF, NL): LF, VT, FF, CR, NEL, and the line and
// paragraph separators.
constexpr std::array<std::string_view, 7> lineEnds{"\n",       "\v",           "\f",          "\r",
                                                   "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

// Bytes of the line end at the text's head, 0 when there is none.
std::size_t lineEndLength(std::string_view text) {
    const auto found = std::ranges::find_if(
        lineEnds, [&](std::string_view lineEnd) { return text.starts_with(lineEnd); });
    return found != lineEnds.end() ? found->size() : 0;
}

// Takes the first line off the text; its end with it.
std::string_view takeLine(std::string_view& text) {
    std::size_t end = 0;
    while (end < text.size() && lineEndLength(text.substr(end)) == 0) {
        ++end;
    }
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    text.remove_prefix(lineEndLength(text));
    return line;
}

std::string_view trimmed(std::string_view text, std::string_view characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

// Takes the first column off a row; empty at its end.
std::string_view takeColumn(std::string_view& row) {
    row.remove_prefix(std::min(row.find_first_not_of(blanks), row.size()));
    const std::string_view column = row.substr(0, row.find_first_of(blanks));
    row.remove_prefix(column.size());
    return column;
}

std::optional<std::string_view> textBehind(std::string_view label, std::string_view line) {
    const std::size_t at = line.find(label);
    return at != std::string_view::npos ? std::optional(line.substr(at + label.size()))
                                        : std::nullopt;
}

void readHeader(std::string_view line, MicCalFile& file) {
    if (const auto rest = textBehind(sensFactorLabel, line); rest && !file.sensFactorDB) {
        file.sensFactorDB =
            decimalNumber(rest->substr(0, rest->find_first_not_of("0123456789.-+")));
    }
    if (const auto rest = textBehind(serialNumberLabel, line)) {
        const std::string_view serialNumber = trimmed(*rest, "\" ,\t");
        file.serialNumber =
            serialNumber.empty() ? std::nullopt : std::optional<std::string>(serialNumber);
    }
}

void readRow(std::string_view line, MicCalFile& file) {
    const auto frequencyHz = decimalNumber(takeColumn(line));
    const auto magnitudeDB = decimalNumber(takeColumn(line));
    if (frequencyHz && magnitudeDB) {
        file.points.push_back({.frequencyHz = *frequencyHz, .magnitudeDB = *magnitudeDB});
    }
}

}  // namespace

MicCalFile::ParseError MicCalFile::ParseError::noValidDataPoints() {
    return {Kind::noValidDataPoints,
            "The calibration file contained no valid frequency/magnitude data points."};
}

MicCalFile MicCalFile::parse(std::string_view contents) {
    MicCalFile file;
    while (!contents.empty()) {
        const std::string_view line = trimmed(takeLine(contents), blanks);
        if (line.empty()) {
            continue;
        }
        if (headerMarks.find(line.front()) != std::string_view::npos) {
            readHeader(line, file);
        } else {
            readRow(line, file);
        }
    }
    if (file.points.empty()) {
        throw ParseError::noValidDataPoints();
    }
    std::ranges::stable_sort(file.points, {}, &MicCalibrationPoint::frequencyHz);
    return file;
}

MicCalFile MicCalFile::read(const std::filesystem::path& path) {
    return parse(readTextFile(path, maxFileBytes));
}

double MicCalFile::magnitudeCorrectionDB(double frequencyHz) const {
    return piecewiseLinear<MicCalibrationPoint>(points, &MicCalibrationPoint::frequencyHz,
                                                &MicCalibrationPoint::magnitudeDB, frequencyHz)
        .value_or(0.0);
}

}  // namespace TarvaneKit
