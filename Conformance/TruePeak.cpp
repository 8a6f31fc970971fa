#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

#include "Chapters.h"
#include "Columns.h"
#include "LoudnessUnderTest.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit::Testing;

double truePeakOf(const Samples& samples, double rate) {
    TarvaneKit::LoudnessMeter meter(rate, {1.0, 1.0});
    for (std::size_t at = 0; at < samples.size(); at += 256) {
        const auto block = std::span<const float>(samples).subspan(
            at, std::min<std::size_t>(256, samples.size() - at));
        const std::array channels{block, block};
        meter.process(channels);
    }
    return meter.readings().truePeakMax;
}

// Faded in and out, since an edge has a peak of its own.
double truePeakOf(const TruePeakCase& c, double rate) {
    Samples tone = sine(rate, rate / c.samplesPerPeriod, c.amplitude, 0.5, c.phaseDegrees);
    const auto fade = static_cast<std::size_t>(0.1 * rate);
    for (std::size_t i = 0; i < fade; ++i) {
        const float gain = static_cast<float>(i) / static_cast<float>(fade);
        tone[i] *= gain;
        tone[tone.size() - 1 - i] *= gain;
    }
    return truePeakOf(tone, rate);
}

// sin(x)/x of a quarter of the sample rate under a Hann window: no peak but its own, of exactly 1,
// so many samples behind a sample.
Samples peakBetweenSamples(double offset) {
    constexpr std::size_t first = 900;
    constexpr std::size_t reach = 64;
    Samples samples(2 * first);
    for (std::size_t i = 0; i <= 2 * reach; ++i) {
        const double t = static_cast<double>(i) - static_cast<double>(reach) - offset;
        const double x = std::numbers::pi * t / 2.0;
        const double sinc = t == 0.0 ? 1.0 : std::sin(x) / x;
        const double window = 0.5 + 0.5 * std::cos(std::numbers::pi * t / (reach + 1));
        samples[first + i] = static_cast<float>(sinc * window);
    }
    return samples;
}

Table tableAt(std::string title, std::string text, const std::vector<double>& rates,
              bool isKnownException) {
    Table table{.title = std::move(title),
                .clause = "EBU Tech 3341 (2016), table 1, cases 15 to 19",
                .text = std::move(text),
                .labelHeading = "Case",
                .unit = "dBTP"};
    table.columns = rateColumns(rates);
    for (const TruePeakCase& c : truePeakCases) {
        Row row{.label = fmt::format("{}: 1/{:g} of the rate, {:g}°", c.number, c.samplesPerPeriod,
                                     c.phaseDegrees),
                .goal = c.expectedDB,
                .limits = Limits{truePeakBelow, truePeakAbove},
                .isKnownException = isKnownException};
        for (const double rate : rates) {
            row.measured.push_back(truePeakOf(c, rate));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table ofBursts() {
    Table table{
        .title = "Peaks between samples",
        .clause = "EBU Tech 3341 (2016), as cases 20 to 23",
        .text =
            "The EBU makes these signals at four times the rate and thins them out from four "
            "different samples on. Its filter is its own, so that this is the same idea with "
            "another signal, and no verdict: a band-limited pulse whose peak of 0 dBTP lies "
            "on a sample, or a quarter, half and three quarters of one behind it.",
        .labelHeading = "Behind the sample by",
        .unit = "dBTP",
        .columns = {"44.1 kHz", "48 kHz"}};
    for (const double offset : {0.0, 0.25, 0.5, 0.75}) {
        const Samples pulse = peakBetweenSamples(offset);
        table.rows.push_back(
            {.label = fmt::format("{:g}", offset),
             .goal = 0.0,
             .measured = {truePeakOf(pulse, 44100.0), truePeakOf(pulse, 48000.0)}});
    }
    return table;
}

}  // namespace

Chapter truePeak() {
    return {
        .title = "True peak (EBU Tech 3341)",
        .text =
            "The detector interpolates to four times the sample rate below 96 kHz and to twice "
            "the rate below 192 kHz; from there on it reads the samples.",
        .exceptions =
            {"At 192 kHz and above the true peak is the peak of the samples. The tones of "
             "Tech 3341, cases 16 to 19, then lie at 24 to 48 kHz, beyond all that is "
             "heard, and read up to 3 dB low."},
        .tables = {tableAt("Tones below 192 kHz",
                           "A tone at a fraction of the sample rate whose samples miss its peaks, "
                           "in both channels.",
                           {44100.0, 48000.0, 88200.0, 96000.0, 176400.0}, false),
                   tableAt("The same at 192 kHz",
                           "The same tones, at the same fractions of the rate.", {192000.0}, true),
                   ofBursts()}};
}

}  // namespace TarvaneConformance
