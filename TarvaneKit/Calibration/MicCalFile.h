// A measurement microphone's calibration file: the maker's sensitivity figure (Sens Factor), the
// serial number, and the correction over frequency that the analysis adds to each line of the
// spectrum. The broadband meters use the Sens Factor alone.
//
// The parser is lenient: makers write anything around the numbers, so a line of no use is passed
// over, and only a file without any usable row is an error.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Coding.h"

namespace TarvaneKit {

/// One row of a microphone's correction curve.
struct MicCalibrationPoint {
    double frequencyHz = 0.0;
    /// Added to the level at that frequency.
    double magnitudeDB = 0.0;

    bool operator==(const MicCalibrationPoint&) const = default;
};

struct MicCalFile {
    std::optional<double> sensFactorDB;
    std::optional<std::string> serialNumber;
    /// Ascending by frequency, rows of equal frequency in file order; never empty after parsing.
    /// A decoded record is trusted as it stands.
    std::vector<MicCalibrationPoint> points;

    /// `what()` is the finished sentence for the user.
    class ParseError : public std::runtime_error {
      public:
        enum class Kind { noValidDataPoints };

        static ParseError noValidDataPoints();

        Kind kind() const { return kind_; }

      private:
        ParseError(Kind kind, const char* description)
            : std::runtime_error(description), kind_(kind) {}

        Kind kind_;
    };

    /// The largest file that is read: some hundred times that of the longest curves sold.
    static constexpr std::size_t maxFileBytes = 8'000'000;

    /// Header lines begin with a double quote, an asterisk or a number sign; in them
    /// "Sens Factor =" with a number right behind it (the first one counts) and "SERNO:" (the
    /// last one counts) are looked for. Of every other line the first two columns count, if they
    /// are numbers between spaces or tabs. Throws a `ParseError`.
    static MicCalFile parse(std::string_view contents);

    /// The file at `path`, as UTF-8 text. Throws a `TextFileError` or a `ParseError`.
    static MicCalFile read(const std::filesystem::path& path);

    /// dB to add at that frequency: straight lines in Hz between the points, flat beyond them,
    /// 0 without points.
    double magnitudeCorrectionDB(double frequencyHz) const;

    bool operator==(const MicCalFile&) const = default;
};

template <>
struct Coding<MicCalibrationPoint> {
    static constexpr auto keys = std::tuple{
        required("frequencyHz", &MicCalibrationPoint::frequencyHz),
        required("magnitudeDB", &MicCalibrationPoint::magnitudeDB),
    };
};

template <>
struct Coding<MicCalFile> {
    static constexpr auto keys = std::tuple{
        optional("sensFactorDB", &MicCalFile::sensFactorDB),
        optional("serialNumber", &MicCalFile::serialNumber),
        required("points", &MicCalFile::points),
    };
};

}  // namespace TarvaneKit
