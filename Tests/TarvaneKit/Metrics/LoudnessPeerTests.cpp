// The loudness meter beside libebur128, an independent implementation of the same standards.
//
// Where the two are defined differently: the relative gate here admits the whole tenth of a unit
// in which it falls, so that integrated loudness may differ where many blocks lie at the gate. The
// range is taken from short-term blocks every 100 ms here and every second there, and by bins of
// a tenth, so that levels held for a few seconds only can fall on either side of a percentile.
// Their true peak interpolates with half as many taps: its response ripples by up to 0.11 dB in
// the top octave, and falls off towards half the sample rate, so that ours reads higher there.

#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "Metrics/LoudnessMeter.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace LoudnessPeerTests {

using namespace Testing;

class Peer {
  public:
    explicit Peer(double sampleRate)
        : state_(ebur128_init(2, static_cast<unsigned long>(sampleRate),
                              EBUR128_MODE_M | EBUR128_MODE_S | EBUR128_MODE_I | EBUR128_MODE_LRA |
                                  EBUR128_MODE_TRUE_PEAK)) {}
    ~Peer() { ebur128_destroy(&state_); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    void process(std::span<const float> left, std::span<const float> right) {
        std::vector<float> interleaved;
        for (std::size_t i = 0; i < left.size(); ++i) {
            interleaved.push_back(left[i]);
            interleaved.push_back(right[i]);
        }
        ASSERT_EQ(ebur128_add_frames_float(state_, interleaved.data(), left.size()),
                  EBUR128_SUCCESS);
    }

    LoudnessReadings readings() const {
        LoudnessReadings r;
        ebur128_loudness_momentary(state_, &r.momentary);
        ebur128_loudness_shortterm(state_, &r.shortTerm);
        ebur128_loudness_global(state_, &r.integrated);
        ebur128_loudness_range(state_, &r.range);
        double left = 0.0;
        double right = 0.0;
        ebur128_true_peak(state_, 0, &left);
        ebur128_true_peak(state_, 1, &right);
        r.truePeakMax = 20.0 * std::log10(std::max(left, right));
        return r;
    }

  private:
    ebur128_state* state_;
};

// How far the true peak may lie above and below the peer's.
struct TruePeakMargin {
    double aboveDB;
    double belowDB;
};
constexpr TruePeakMargin programme{0.05, 0.05};
constexpr TruePeakMargin topOctave{0.05, 0.12};
constexpr TruePeakMargin fullBand{1.2, 0.05};

// Faded at both ends over 10 ms: an edge is a signal of full band.
Samples faded(Samples samples, double rate) {
    const std::size_t length = static_cast<std::size_t>(rate / 100);
    for (std::size_t i = 0; i < length; ++i) {
        const float gain = static_cast<float>(i) / static_cast<float>(length);
        samples[i] *= gain;
        samples[samples.size() - 1 - i] *= gain;
    }
    return samples;
}

enum class Range { compared, leftOut };

void compare(double rate, const Samples& left, const Samples& right, TruePeakMargin margin,
             Range range = Range::compared) {
    LoudnessMeter meter(rate, {1.0, 1.0});
    Peer peer(rate);
    const std::size_t step = static_cast<std::size_t>(rate / 10);
    for (std::size_t i = 0; i + step <= left.size(); i += step) {
        const std::array<std::span<const float>, 2> channels{std::span(left).subspan(i, step),
                                                             std::span(right).subspan(i, step)};
        meter.process(channels);
        peer.process(channels[0], channels[1]);
        const LoudnessReadings ours = meter.readings();
        const LoudnessReadings theirs = peer.readings();
        if (ours.momentary > -70.0) {
            ASSERT_NEAR(ours.momentary, theirs.momentary, 0.001) << "step " << i / step;
        }
        if (ours.shortTerm > -70.0) {
            ASSERT_NEAR(ours.shortTerm, theirs.shortTerm, 0.001) << "step " << i / step;
        }
    }
    const LoudnessReadings ours = meter.readings();
    const LoudnessReadings theirs = peer.readings();
    EXPECT_NEAR(ours.integrated, theirs.integrated, 0.1);
    if (range == Range::compared) {
        EXPECT_NEAR(ours.range, theirs.range, 1.5);
    }
    EXPECT_LT(ours.truePeakMax, theirs.truePeakMax + margin.aboveDB);
    EXPECT_GT(ours.truePeakMax, theirs.truePeakMax - margin.belowDB);
}

class LoudnessBesideAPeer : public testing::TestWithParam<double> {
  protected:
    const double rate = GetParam();
};
INSTANTIATE_TEST_SUITE_P(, LoudnessBesideAPeer,
                         testing::Values(44100.0, 48000.0, 96000.0, 192000.0));

TEST_P(LoudnessBesideAPeer, onNoise) {
    const int count = static_cast<int>(8 * rate);
    compare(rate, whiteNoise(count, 0.1, 1), whiteNoise(count, 0.05, 2), fullBand);
}

TEST_P(LoudnessBesideAPeer, onTones) {
    for (const double hertz : {40.0, 440.0, 997.0, 5000.0, 15000.0}) {
        SCOPED_TRACE(hertz);
        compare(rate, faded(sine(rate, hertz, 0.3, 4), rate),
                faded(sine(rate, hertz, 0.1, 4, 90), rate), topOctave);
    }
}

TEST_P(LoudnessBesideAPeer, onASweep) {
    const Samples left = faded(sweep(rate, 0.5, 10), rate);
    compare(rate, left, Samples(left.rbegin(), left.rend()), topOctave);
}

TEST_P(LoudnessBesideAPeer, onSpeechLikeBursts) {
    compare(rate, speechLike(rate, 30, 3), speechLike(rate, 30, 4), programme);
}

TEST_P(LoudnessBesideAPeer, onLevelsOnEitherSideOfTheGates) {
    Samples left;
    Samples right;
    unsigned seed = 10;
    for (const double peakDB : {-20.0, -75.0, -33.0, -20.0, -45.0, -28.0, -80.0}) {
        const int count = static_cast<int>(4 * rate);
        append(left, whiteNoise(count, std::pow(10.0, peakDB / 20), ++seed));
        append(right, whiteNoise(count, std::pow(10.0, peakDB / 20), ++seed));
    }
    compare(rate, left, right, fullBand, Range::leftOut);
}

}  // namespace LoudnessPeerTests
}  // namespace TarvaneKit
