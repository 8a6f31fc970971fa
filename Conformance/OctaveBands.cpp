#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "Chapters.h"
#include "DSP/FFTAnalyzer.h"
#include "DSP/OctaveBandAnalyzer.h"
#include "DSP/OctaveBands.h"
#include "Support/ClassOneBands.h"
#include "Support/TestSignals.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit;
using namespace TarvaneKit::Testing;

// As the program's analyzer has them.
constexpr double rate = 48000.0;
constexpr int fftSize = 4096;
constexpr double lineDistanceHz = rate / fftSize;

// The limits end at 70 dB. Far beyond, the rounding of 32-bit samples would decide on the tenths.
constexpr double highestAttenuation = 75.0;

// A band's level of a tone of amplitude 1 in its middle: the three lines of the Hann window's main
// lobe have the powers 1, 1/4 and 1/4.
const double passbandLevelDB = 10.0 * std::log10(1.5);

// What can't be inside, known from how bands are made of lines and not from what is measured below.
// A tone far under a band leaks into it while the band begins so few lines above 0 Hz: the tails of
// the Hann window have fallen by 70 dB only some dozen lines off.
constexpr double lowestEdgeInLines = 14.0;
// Where the standard's edge lies so far inside ours, in lines, a tone on it is wholly in the band.
constexpr double largestEdgeShiftInLines = 1.0 / 3.0;

// Of two breakpoints that are equally near to their limits the first is told, whatever the
// rounding.
constexpr double noticeableDB = 0.02;

// The FFT's figures of a tone hang on its phase where its lobe meets that of the negative
// frequency.
constexpr std::array phasesDegrees{0.0, 45.0, 90.0, 135.0};

class Bands {
  public:
    explicit Bands(OctaveFraction fraction)
        : perOctave(rawValue(fraction)),
          analyzer(OctaveBands::standardBands(fraction, 20.0, 20000.0), fftSize, rate) {}

    const int perOctave;
    const OctaveBandAnalyzer analyzer;

    const OctaveBand& band(int index) const {
        return analyzer.bands()[static_cast<std::size_t>(index)];
    }

    // The attenuation of a tone at a multiple of the band's middle.
    double attenuation(int index, double ratio) const {
        double power = 0.0;
        for (const double phase : phasesDegrees) {
            const Samples tone =
                sine(rate, band(index).centerFrequencyHz * ratio, 1.0, fftSize / rate, phase);
            std::vector<double> powers(analyzer.bands().size());
            analyzer.bandPowers(fft_.magnitudeSpectrum(tone), powers);
            power += powers[static_cast<std::size_t>(index)] / phasesDegrees.size();
        }
        return std::min(highestAttenuation,
                        passbandLevelDB - 10.0 * std::log10(std::max(power, 1e-30)));
    }

  private:
    const FFTAnalyzer fft_ = *FFTAnalyzer::create(fftSize, FFTAnalyzer::WindowType::hann);
};

struct Breakpoint {
    double exponent;  // negative: below the middle
    Limits limits;

    double ratio(int perOctave) const {
        const double above = breakpoint(std::abs(exponent), perOctave);
        return exponent < 0.0 ? 1.0 / above : above;
    }
};

// From the middle outwards.
std::vector<Breakpoint> breakpoints() {
    std::vector<Breakpoint> all;
    for (const ClassOneAttenuation& point : classOneAttenuations) {
        all.push_back({point.exponent, {point.lowest, point.highest}});
        if (point.exponent > 0.0) {
            all.push_back({-point.exponent, {point.lowest, point.highest}});
        }
    }
    return all;
}

std::string nameOf(double exponent) {
    const double size = std::abs(exponent);
    const std::string sign = exponent < 0.0 ? "-" : "+";
    if (size == insideTheEdge) {
        return sign + "1/2, just inside";
    }
    for (const int denominator : {1, 2, 4, 8}) {
        const double numerator = size * denominator;
        if (size > 0.0 && size < 1.0 && numerator == std::round(numerator)) {
            return fmt::format("{}{:g}/{}", sign, numerator, denominator);
        }
    }
    return size == 0.0 ? "0" : fmt::format("{}{:g}", sign, size);
}

Table atBreakpoints(const Bands& octaves, const Bands& thirds) {
    Table table{
        .title = "The bands at 1 kHz",
        .clause = "IEC 61260-1:2014, 5.10, table 1",
        .text =
            "A steady tone at each breakpoint; its relative attenuation. The breakpoint's place "
            "is the octave ratio 10^0.3 to that power, for thirds narrowed as the standard "
            "says. Attenuations above 75 dB are shown as 75.",
        .labelHeading = "Exponent",
        .unit = "dB",
        .columns = {"1/1 octave", "1/3 octave"},
        .decimals = 1,
        .axis = Table::Axis::linear};
    std::vector<Breakpoint> ascending = breakpoints();
    std::ranges::sort(ascending, {}, &Breakpoint::exponent);
    for (const Breakpoint& point : ascending) {
        Row row{.label = nameOf(point.exponent), .place = point.exponent, .limits = point.limits};
        for (const Bands* const bands : {&octaves, &thirds}) {
            const auto& all = bands->analyzer.bands();
            const auto middle = std::ranges::find(all, 1000.0, &OctaveBand::centerFrequencyHz);
            row.measured.push_back(bands->attenuation(static_cast<int>(middle - all.begin()),
                                                      point.ratio(bands->perOctave)));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

// The breakpoint at which a band is nearest to its limits or furthest outside.
Row worstOf(const Bands& bands, int index) {
    const OctaveBand& band = bands.band(index);
    Row worst;
    for (const Breakpoint& point : breakpoints()) {
        const double ratio = point.ratio(bands.perOctave);
        if (band.centerFrequencyHz * ratio >= rate / 2.0) {
            continue;
        }
        Row row{.label = fmt::format("{:.5g}", band.centerFrequencyHz),
                .limits = point.limits,
                .measured = {bands.attenuation(index, ratio)},
                .remark = "at " + nameOf(point.exponent)};
        if (worst.measured.empty() || row.margin() < worst.margin() - noticeableDB) {
            worst = std::move(row);
        }
    }
    const double edgeShiftHz =
        band.upperEdgeHz - band.centerFrequencyHz * breakpoint(0.5, bands.perOctave);
    worst.isKnownException = band.lowerEdgeHz < lowestEdgeInLines * lineDistanceHz ||
                             edgeShiftHz > largestEdgeShiftInLines * lineDistanceHz;
    return worst;
}

Table everyBand(const Bands& bands) {
    Table table{
        .title = fmt::format("Every 1/{} octave band", bands.perOctave),
        .clause = "IEC 61260-1:2014, 5.10, table 1",
        .text =
            "The relative attenuation at one breakpoint of each band: of all below 24 kHz the "
            "one that is nearest to its limits, or furthest outside.",
        .labelHeading = "Hz",
        .unit = "dB",
        .columns = {"Attenuation"},
        .decimals = 1};
    for (int i = 0; i < bands.analyzer.bandCount(); ++i) {
        table.rows.push_back(worstOf(bands, i));
    }
    return table;
}

double leastMargin(const Table& table) {
    double least = noLimit;
    for (const Row& row : table.rows) {
        least = std::min(least, row.margin());
    }
    return least;
}

}  // namespace

Chapter octaveBands() {
    const Bands octaves(OctaveFraction::oneOctave);
    const Bands thirds(OctaveFraction::thirdOctave);
    Table everyOctave = everyBand(octaves);
    Table everyThird = everyBand(thirds);
    const double lowestHz = lowestEdgeInLines * lineDistanceHz;
    return {
        .title = "Octave bands (IEC 61260-1:2014)",
        .text = fmt::format("The analyzer's bands are sums over the lines of an FFT of {} points, "
                            "here at 48 kHz, {:.2f} Hz "
                            "apart, each shared out among the bands that it overlaps. That is a "
                            "display of the spectrum "
                            "and no bank of filters. Centres and edges are octaves of 1 kHz by 2; "
                            "those of the standard, "
                            "by 10^0.3, lie up to {:.2f} % beside them at 16 kHz. No sound level "
                            "is made of bands: the "
                            "meter has a road of its own.",
                            fftSize, lineDistanceHz,
                            (16000.0 / (1000.0 * std::pow(octaveRatio, 4)) - 1.0) * 100.0),
        .exceptions =
            {fmt::format(
                 "Octave and third-octave bands that begin below {:.0f} Hz at 48 kHz, and in "
                 "proportion at other rates, don't meet class 1 of IEC 61260-1: the lines of the "
                 "FFT "
                 "are too far apart there, and a tone that should be attenuated by 70 dB is so by "
                 "{:.0f} dB less at the worst.",
                 lowestHz, -std::min(leastMargin(everyOctave), leastMargin(everyThird))),
             "Octave bands from 4 kHz and third-octave bands from 10 kHz on hold a tone on the "
             "standard's "
             "band edge nearly whole, where 1.2 dB of attenuation are asked for: their own edges, "
             "by "
             "octaves of 2, lie up to 0.1 % further out, and are steeper than that."},
        .tables = {atBreakpoints(octaves, thirds), std::move(everyOctave), std::move(everyThird)}};
}

}  // namespace TarvaneConformance
