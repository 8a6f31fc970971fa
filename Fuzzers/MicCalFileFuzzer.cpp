// Any bytes as a microphone's calibration file: parsed or turned down, and what was parsed keeps
// what the analysis relies on and survives being stored.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Calibration/MicCalFile.h"
#include "Core/Contract.h"
#include "Core/TextFile.h"

namespace {

using TarvaneKit::MicCalFile;
using TarvaneKit::MicCalibrationPoint;

std::optional<MicCalFile> parsed(std::string_view text) {
    try {
        return MicCalFile::parse(text);
    } catch (const MicCalFile::ParseError&) {
        return std::nullopt;
    }
}

void check(const MicCalFile& file) {
    TARVANE_PRECONDITION(!file.points.empty());
    TARVANE_PRECONDITION(
        std::ranges::is_sorted(file.points, {}, &MicCalibrationPoint::frequencyHz));
    TARVANE_PRECONDITION(!file.sensFactorDB || std::isfinite(*file.sensFactorDB));
    TARVANE_PRECONDITION(!file.serialNumber || !file.serialNumber->empty());
    for (const auto& point : file.points) {
        TARVANE_PRECONDITION(std::isfinite(point.frequencyHz) && std::isfinite(point.magnitudeDB));
    }
    TARVANE_PRECONDITION(file.magnitudeCorrectionDB(file.points.front().frequencyHz) ==
                         file.points.front().magnitudeDB);
    for (const double frequencyHz : {-1.0, 0.0, 20.0, 1000.0, 24000.0}) {
        static_cast<void>(file.magnitudeCorrectionDB(frequencyHz));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    // The parser itself takes bytes of any encoding.
    if (const auto file = parsed(bytes)) {
        check(*file);
    }
    if (const auto text = TarvaneKit::utf8Text(bytes)) {
        if (const auto file = parsed(*text)) {
            check(*file);
            const auto stored = TarvaneKit::encode(*file);
            TARVANE_PRECONDITION(stored && TarvaneKit::decode<MicCalFile>(*stored) == file);
        }
    }
    return 0;
}
