// Meters a steady tone for hours of its own time, as fast as the machine goes, and prints every
// hour what the readings are and what memory the process holds. Ends with 1 when time alone moved a
// reading, when the session lost a second, or when memory grew by more than what the level history
// keeps.
//
//     TarvaneLongRun HOURS [CHANNELS]

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <optional>

#include "EngineDesk.h"

namespace {

using namespace TarvaneBenchmarks;
using TarvaneKit::SPLHistoryRecorder;
using TarvaneKit::SPLMetric;

constexpr int secondsPerHour = 3600;
constexpr double mebibyte = 1024.0 * 1024.0;

// 1200 Hz at 48 kHz: its period goes into a tick's frames, so that ticks join without a step.
constexpr double cyclesPerTick = 20.0;
constexpr double amplitude = 0.1;
// The sine's RMS, and A weighting at 1.2 kHz (IEC 61672-1, formula E.6).
constexpr double levelDBFS = -20.0 - 3.01 + 0.49;
constexpr double levelTolerance = 0.02;
// What sums of hours may move a reading that doesn't change.
constexpr double driftTolerance = 1e-6;
// The allocator's own, and what the first hour hadn't touched.
constexpr double memoryTolerance = 8.0;

struct Reading {
    /// The loudest and the softest A-weighted level that the session has had.
    double loudestDBFS;
    double softestDBFS;
    double integratedLUFS;
    double truePeakDBTP;
};

double residentMebibytes() {
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / mebibyte;
}

// What the buckets in use take: each keeps two levels of a metric, as floats.
double historyMebibytes(TarvaneApp::MeterEngine& engine) {
    double bytes = 0.0;
    for (const TarvaneApp::ChannelInfo& info : engine.channelInfos()) {
        const SPLHistoryRecorder& history = engine.meterChannel(info.id).levelHistory();
        bytes += std::min(history.duration() / history.bucketSeconds() + 1.0,
                          static_cast<double>(history.maxBuckets())) *
                 static_cast<double>(history.metrics().size()) * 2.0 * sizeof(float);
    }
    return bytes / mebibyte;
}

}  // namespace

int main(int argc, char** argv) {
    const int hours = argc > 1 ? std::atoi(argv[1]) : 0;
    const int channels = argc > 2 ? std::atoi(argv[2]) : 1;
    if (hours < 1 || channels < 1) {
        fmt::print(stderr, "usage: TarvaneLongRun HOURS [CHANNELS]\n");
        return 2;
    }
    ensureApplication();
    EngineDesk desk(channels);
    const auto side =
        TarvaneKit::Testing::sineOfCycles(cyclesPerTick, EngineDesk::framesPerTick, amplitude);
    const EngineDesk::Block tone{side, side};
    auto& channel = desk.engine().meterChannel(TarvaneKit::UUID::main());
    const auto reading = [&] {
        const SPLHistoryRecorder& history = channel.levelHistory();
        const auto extremes = history.extremes(*history.index(
            SPLMetric::spl(TarvaneKit::Weighting::a, TarvaneKit::TimeWeighting::fast)));
        return Reading{.loudestDBFS = extremes.max->levelDB,
                       .softestDBFS = extremes.min->levelDB,
                       .integratedLUFS = channel.live.loudness->integrated,
                       .truePeakDBTP = channel.live.loudness->truePeakMax};
    };

    bool isSound = true;
    std::optional<Reading> first;
    double firstOwn = 0.0;
    double history = 0.0;
    fmt::print("{:>5} {:>9} {:>9} {:>12} {:>12} {:>10} {:>11} {:>11}\n", "hour", "LAF max",
               "LAF min", "LUFS", "dBTP", "session s", "memory MiB", "of history");
    for (int hour = 1; hour <= hours; ++hour) {
        for (int n = 0; n < secondsPerHour * static_cast<int>(EngineDesk::ticksPerSecond); ++n) {
            desk.feed(tone);
            desk.tick();
        }
        const Reading now = reading();
        const double duration = channel.levelHistory().duration();
        const double memory = residentMebibytes();
        // What was written to once stays resident when buckets merge.
        history = std::max(history, historyMebibytes(desk.engine()));
        fmt::print("{:>5} {:>9.4f} {:>9.4f} {:>12.6f} {:>12.6f} {:>10.1f} {:>11.1f} {:>11.1f}\n",
                   hour, now.loudestDBFS, now.softestDBFS, now.integratedLUFS, now.truePeakDBTP,
                   duration, memory, history);
        if (!first) {
            first = now;
            firstOwn = memory - history;
        }
        isSound = isSound && std::abs(now.loudestDBFS - levelDBFS) < levelTolerance &&
                  std::abs(now.softestDBFS - levelDBFS) < levelTolerance &&
                  std::abs(now.integratedLUFS - first->integratedLUFS) < driftTolerance &&
                  std::abs(now.truePeakDBTP - first->truePeakDBTP) < driftTolerance &&
                  std::abs(duration - hour * secondsPerHour) < 1.0 &&
                  memory - history - firstOwn < memoryTolerance;
    }
    fmt::print("{}\n", isSound ? "Nothing moved but time." : "Time alone changed something.");
    return isSound ? 0 : 1;
}
