// Programme loudness: momentary, short-term, integrated, range and true peak of a channel at
// 48 kHz, read ten times a second, on every instruction set of this machine, beside the plain
// reading of its formulas and libebur128 with the same readings. "TruePeak" is the detector alone
// in stereo, each block's own peak, so that no maximum of earlier blocks spares it any work.
// Signals: Gaussian noise; a programme of beats with its peaks limited; a tone whose every sample
// and interpolated value is as large as the last, where a detector can pass over nothing.

#include <benchmark/benchmark.h>
#include <ebur128.h>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "DSP/Kernels/VectorTarget.h"
#include "DSP/TruePeakDetector.h"
#include "FrameCost.h"
#include "Metrics/LoudnessMeter.h"
#include "Support/ScalarLoudnessMeter.h"

namespace TarvaneBenchmarks {
namespace {

using TarvaneKit::LoudnessMeter;
using TarvaneKit::TruePeakDetector;
using TarvaneKit::VectorTarget;
using TarvaneKit::Testing::ScalarLoudnessMeter;
using TarvaneKit::Testing::ScalarTruePeak;

constexpr int realBlockLength = 256;  // what the audio server is asked for
constexpr int longBlockLength = 512;  // what the figures to beat were measured with
constexpr int signalFrames = 20 * 48000;
constexpr int framesPerReading = 4800;

// ns per stereo frame in blocks of 512, by Highway's name of the instruction set: the fastest
// experiment on a 2.95 GHz AVX-512 cloud machine.
const std::map<std::string, double> meterNsToBeat = {
    {"SSSE3", 15.8}, {"SSE4", 15.8}, {"AVX2", 8.1}, {"AVX3", 5.5}};
const std::map<std::string, double> truePeakNsToBeat = {
    {"SSSE3", 12.6}, {"SSE4", 12.6}, {"AVX2", 4.7}, {"AVX3", 3.3}};

enum class SignalKind { noise, programme, worst };

const std::map<SignalKind, std::string> signalNames = {{SignalKind::noise, "noise"},
                                                       {SignalKind::programme, "programme"},
                                                       {SignalKind::worst, "worst"}};

// [channel][frame], two channels.
using Signal = std::vector<std::vector<float>>;

Signal makeSignal(SignalKind kind) {
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    Signal signal(2, std::vector<float>(signalFrames));
    for (auto& samples : signal) {
        double low = 0.0;
        for (int i = 0; i < signalFrames; ++i) {
            const double x = normal(random);
            low += 0.3 * (x - low);
            const double beat = std::exp(-(i % 24000) / 6000.0);
            double value = 0.0;
            switch (kind) {
                case SignalKind::noise:
                    value = 0.1 * x;
                    break;
                case SignalKind::programme:
                    value = std::clamp(low * (0.15 + 0.8 * beat), -0.98, 0.98);
                    break;
                case SignalKind::worst:
                    value = std::sin((i + 0.5) * std::numbers::pi / 2.0);
                    break;
            }
            samples[static_cast<std::size_t>(i)] = static_cast<float>(value);
        }
    }
    return signal;
}

const Signal& signalOf(SignalKind kind) {
    static std::map<SignalKind, Signal> signals;
    auto& signal = signals[kind];
    if (signal.empty()) {
        signal = makeSignal(kind);
    }
    return signal;
}

// A signal's channels in blocks, again and again.
class Blocks {
  public:
    Blocks(const Signal& signal, std::size_t channelCount, int blockLength)
        : signal_(signal), blockLength_(blockLength), channels_(channelCount) {}

    std::span<const std::span<const float>> next() {
        if (position_ + blockLength_ > signalFrames) {
            position_ = 0;
        }
        for (std::size_t c = 0; c < channels_.size(); ++c) {
            channels_[c] = std::span(signal_[c])
                               .subspan(static_cast<std::size_t>(position_),
                                        static_cast<std::size_t>(blockLength_));
        }
        position_ += blockLength_;
        return channels_;
    }

  private:
    const Signal& signal_;
    int blockLength_;
    int position_ = 0;
    std::vector<std::span<const float>> channels_;
};

// Says when a tenth of a second is over.
class ReadingClock {
  public:
    bool isDueAfter(int frames) {
        framesLeft_ -= frames;
        if (framesLeft_ > 0) {
            return false;
        }
        framesLeft_ += framesPerReading;
        return true;
    }

  private:
    int framesLeft_ = framesPerReading;
};

// Arguments of all: channels, frames per block.
template <class Meter>
void measureMeter(benchmark::State& state, SignalKind kind) {
    const auto channelCount = static_cast<std::size_t>(state.range(0));
    const int frameCount = static_cast<int>(state.range(1));
    Meter meter(benchmarkSampleRate, std::vector<double>(channelCount, 1.0));
    Blocks blocks(signalOf(kind), channelCount, frameCount);
    ReadingClock clock;
    measureFrames(state, frameCount, [&] {
        meter.process(blocks.next());
        if (clock.isDueAfter(frameCount)) {
            benchmark::DoNotOptimize(meter.readings());
        }
    });
}

void loudnessMeter(benchmark::State& state, const VectorTarget& target, SignalKind kind) {
    TarvaneKit::useVectorTarget(target);
    measureMeter<LoudnessMeter>(state, kind);
    TarvaneKit::useBestVectorTarget();
}

void plainMeter(benchmark::State& state, SignalKind kind) {
    measureMeter<ScalarLoudnessMeter>(state, kind);
}

void libebur128(benchmark::State& state, SignalKind kind) {
    const auto channelCount = static_cast<unsigned>(state.range(0));
    const int frameCount = static_cast<int>(state.range(1));
    const Signal& signal = signalOf(kind);
    std::vector<float> interleaved;
    for (std::size_t i = 0; i < signalFrames; ++i) {
        for (unsigned c = 0; c < channelCount; ++c) {
            interleaved.push_back(signal[c][i]);
        }
    }
    ebur128_state* meter =
        ebur128_init(channelCount, static_cast<unsigned long>(benchmarkSampleRate),
                     EBUR128_MODE_M | EBUR128_MODE_S | EBUR128_MODE_I | EBUR128_MODE_LRA |
                         EBUR128_MODE_TRUE_PEAK | EBUR128_MODE_HISTOGRAM);
    ReadingClock clock;
    int position = 0;
    measureFrames(state, frameCount, [&] {
        if (position + frameCount > signalFrames) {
            position = 0;
        }
        ebur128_add_frames_float(meter,
                                 &interleaved[static_cast<unsigned>(position) * channelCount],
                                 static_cast<std::size_t>(frameCount));
        position += frameCount;
        if (clock.isDueAfter(frameCount)) {
            double value = 0.0;
            ebur128_loudness_momentary(meter, &value);
            ebur128_loudness_shortterm(meter, &value);
            ebur128_loudness_global(meter, &value);
            ebur128_loudness_range(meter, &value);
            for (unsigned c = 0; c < channelCount; ++c) {
                ebur128_true_peak(meter, c, &value);
            }
            benchmark::DoNotOptimize(value);
        }
    });
    ebur128_destroy(&meter);
}

template <class Detector>
void measureTruePeak(benchmark::State& state, SignalKind kind) {
    const int frameCount = static_cast<int>(state.range(1));
    Detector left(benchmarkSampleRate, 24);
    Detector right(benchmarkSampleRate, 24);
    Blocks blocks(signalOf(kind), 2, frameCount);
    measureFrames(state, frameCount, [&] {
        const auto channels = blocks.next();
        benchmark::DoNotOptimize(left.processBlock(channels[0]));
        benchmark::DoNotOptimize(right.processBlock(channels[1]));
    });
}

void truePeakDetector(benchmark::State& state, const VectorTarget& target, SignalKind kind) {
    TarvaneKit::useVectorTarget(target);
    measureTruePeak<TruePeakDetector>(state, kind);
    TarvaneKit::useBestVectorTarget();
}

void plainTruePeak(benchmark::State& state, SignalKind kind) {
    measureTruePeak<ScalarTruePeak>(state, kind);
}

// Mono and stereo in both lengths on noise; other signals as the figures to beat were measured.
std::vector<std::pair<int, int>> argumentsOf(SignalKind kind) {
    if (kind != SignalKind::noise) {
        return {{2, longBlockLength}};
    }
    return {{1, realBlockLength}, {1, longBlockLength}, {2, realBlockLength}, {2, longBlockLength}};
}

void compare(const std::string& benchmark, const std::string& arguments, const std::string& plain,
             const std::string& peer, std::optional<double> nsToBeat) {
    CostComparison comparison{benchmark + arguments, plain + arguments, nsToBeat};
    comparison.peer = peer + arguments;
    compareCost(comparison);
}

std::optional<double> figureFor(const VectorTarget& target,
                                const std::map<std::string, double>& figures) {
    const auto found = figures.find(target.name);
    return found == figures.end() ? std::nullopt : std::optional(found->second);
}

void registerSignal(SignalKind kind) {
    const std::string signalName = signalNames.at(kind);
    const std::string peer = "Loudness/libebur128/" + signalName;
    const std::string plain = "Loudness/plain/" + signalName;
    const std::string plainPeak = "TruePeak/plain/" + signalName;
    const std::vector<std::int64_t> peakArguments{2, longBlockLength};
    auto* peerBenchmark = benchmark::RegisterBenchmark(peer.c_str(), libebur128, kind);
    auto* plainBenchmark = benchmark::RegisterBenchmark(plain.c_str(), plainMeter, kind);
    for (const auto& [channels, frames] : argumentsOf(kind)) {
        peerBenchmark->Args({channels, frames});
        plainBenchmark->Args({channels, frames});
    }
    benchmark::RegisterBenchmark(plainPeak.c_str(), plainTruePeak, kind)->Args(peakArguments);
    for (const VectorTarget& target : TarvaneKit::availableVectorTargets()) {
        const std::string name = fmt::format("LoudnessMeter/{}/{}", target.name, signalName);
        auto* meter = benchmark::RegisterBenchmark(name.c_str(), loudnessMeter, target, kind);
        for (const auto& [channels, frames] : argumentsOf(kind)) {
            meter->Args({channels, frames});
            compare(name, fmt::format("/{}/{}", channels, frames), plain, peer,
                    channels == 2 ? figureFor(target, meterNsToBeat) : std::nullopt);
        }
        const std::string peak = fmt::format("TruePeak/{}/{}", target.name, signalName);
        benchmark::RegisterBenchmark(peak.c_str(), truePeakDetector, target, kind)
            ->Args(peakArguments);
        compare(peak, fmt::format("/2/{}", longBlockLength), plainPeak, {},
                figureFor(target, truePeakNsToBeat));
    }
}

const bool isRegistered = [] {
    for (const auto& [kind, name] : signalNames) {
        registerSignal(kind);
    }
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
