// Prints what the ring-out detector does at each sensitivity: with simulated rooms whose gain
// creeps past the point of feedback, and with music-like material.

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "DSP/RingOutDetector.h"
#include "Support/LineSpectra.h"
#include "Support/RingOutSignals.h"

namespace {

using namespace TarvaneKit;
using namespace TarvaneKit::Testing;

constexpr PeakPicker::Configuration peakPicker = RingOutDetector::fullScalePeakPicker;

struct Raised {
    double seconds;
    RingAlert alert;
    double peakLevelDB;
};

using RaisedBySensitivity = std::array<std::vector<Raised>, 3>;

RaisedBySensitivity alertsOf(const std::vector<float>& signal) {
    std::vector<RingOutDetector> detectors;
    for (const auto sensitivity : allCases<RingOutSensitivity>()) {
        detectors.emplace_back(spectrumSampleRate, spectrumFFTSize,
                               RingOutDetector::Configuration(sensitivity, peakPicker));
    }
    RaisedBySensitivity raised;
    forEachSpectrum(signal, [&](auto levelsDB, auto magnitudes, Date date) {
        for (std::size_t i = 0; i < detectors.size(); ++i) {
            for (RingAlert& alert : detectors[i].update({levelsDB, magnitudes}, date)) {
                const double bin = alert.frequencyHz * spectrumFFTSize / spectrumSampleRate;
                raised[i].push_back({std::chrono::duration<double>(date.time_since_epoch()).count(),
                                     alert, levelsDB[static_cast<std::size_t>(std::lround(bin))]});
            }
        }
    });
    return raised;
}

// To the bin: the loop's next in-phase frequency lies 1 / delay away, some 80 Hz.
bool isNear(double frequencyHz, double ringHz) {
    return std::abs(frequencyHz - ringHz) <= spectrumSampleRate / spectrumFFTSize;
}

// The first alert on the ring's own frequency: seconds after the loop became unstable, the level
// then, and how many alerts named another frequency.
std::string roomCell(const std::vector<Raised>& raised, const FeedbackRun& run) {
    std::optional<Raised> first;
    int elsewhere = 0;
    for (const Raised& one : raised) {
        if (!isNear(one.alert.frequencyHz, run.ringFrequencyHz)) {
            ++elsewhere;
        } else if (!first) {
            first = one;
        }
    }
    std::string cell = first
                           ? fmt::format("{:+6.2f} s {:6.1f} dB",
                                         first->seconds - run.unstableAtSeconds, first->peakLevelDB)
                           : "never";
    if (elsewhere > 0) {
        cell += fmt::format(" +{}", elsewhere);
    }
    return cell;
}

void printRoom(const std::string& name, const FeedbackRoom& room) {
    const FeedbackRun run = simulate(room);
    const RaisedBySensitivity raised = alertsOf(run.signal);
    fmt::print("| {:<10} | {:8.1f} | {:5.2f} | {:4.0f} | {:+8.2f} |", name, run.ringFrequencyHz,
               room.creepDBPerSecond, room.delaySeconds * 1000.0,
               run.howlAtSeconds - run.unstableAtSeconds);
    for (const auto& alerts : raised) {
        fmt::print(" {:<22} |", roomCell(alerts, run));
    }
    fmt::print("\n");
}

void printRooms() {
    fmt::print(
        "Rooms: the first alert after the loop's gain passes 1, and the tone's level then\n"
        "(+n: alerts that name another frequency, mostly the loop's next in-phase ones)\n\n"
        "| mode       | rings Hz | dB/s  | ms   | howls s  | {:<22} | {:<22} | {:<22} |\n"
        "|---|---|---|---|---|---|---|---|\n",
        "low", "normal", "high");
    for (const double frequencyHz :
         {100.0, 125.0, 180.0, 250.0, 315.0, 440.0, 630.0, 800.0, 1000.0, 1250.0, 1600.0, 2000.0,
          2500.0, 3150.0, 4000.0, 6300.0, 8000.0, 11000.0}) {
        printRoom(fmt::format("{:.0f} Hz", frequencyHz), roomWithModeAt(frequencyHz));
    }
    for (const double creep : {0.05, 0.1, 0.5, 1.0, 2.0, 4.0}) {
        FeedbackRoom room = roomWithModeAt(1000.0);
        room.creepDBPerSecond = creep;
        room.durationSeconds = std::min(-room.startGainDB / creep + 20.0, 60.0);
        printRoom("1000 Hz", room);
    }
    for (const double delay : {0.003, 0.006, 0.025, 0.05}) {
        FeedbackRoom room = roomWithModeAt(1000.0);
        room.delaySeconds = delay;
        printRoom("1000 Hz", room);
    }
}

std::string materialCell(const std::vector<Raised>& raised) {
    if (raised.empty()) {
        return "-";
    }
    return fmt::format("{} x, {:.2f} s, {:.0f} Hz", raised.size(), raised.front().seconds,
                       raised.front().alert.frequencyHz);
}

void printMaterial() {
    fmt::print(
        "\nMaterial: alerts raised, time and frequency of the first\n\n"
        "| {:<42} | {:<22} | {:<22} | {:<22} | why |\n|---|---|---|---|---|\n",
        "", "low", "normal", "high");
    for (const Material& material : musicLikeMaterial()) {
        fmt::print("| {:<42} |", material.name);
        for (const auto& alerts : alertsOf(material.signal)) {
            fmt::print(" {:<22} |", materialCell(alerts));
        }
        fmt::print(" {} |\n", material.whyItRings);
    }
}

}  // namespace

int main() {
    printRooms();
    printMaterial();
}
