#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Chapters.h"
#include "Columns.h"
#include "LoudnessUnderTest.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit;
using namespace TarvaneKit::Testing;

// Rows that several rates add their figures to, in the order of the first rate.
class Rows {
  public:
    void begin() { next_ = 0; }

    void add(const std::string& label, double goal, double figure, bool isKnownException = false) {
        if (next_ == rows_.size()) {
            rows_.push_back({.label = label,
                             .goal = goal,
                             .limits = Limits::within(loudnessToleranceLU),
                             .isKnownException = isKnownException});
        }
        rows_[next_++].measured.push_back(figure);
    }

    void add(const std::string& label, double goal, const Range& figures,
             bool isKnownException = false) {
        add(label + ", lowest", goal, figures.lowest, isKnownException);
        add(label + ", highest", goal, figures.highest);
    }

    /// What needs a recording.
    void addUnmeasured(const std::string& label, double goal) {
        if (next_ == rows_.size()) {
            rows_.push_back({.label = label,
                             .goal = goal,
                             .limits = Limits::within(loudnessToleranceLU),
                             .remark = "a recording of the EBU's, not part of this tree"});
        }
        ++next_;
    }

    std::vector<Row> take() { return std::move(rows_); }

  private:
    std::vector<Row> rows_;
    std::size_t next_ = 0;
};

double surroundLoudness(const UnitTone& tone) {
    std::vector<double> weights;
    for (const SurroundChannel& channel : surroundCase) {
        weights.push_back(channel.weight);
    }
    LoudnessMeter meter(tone.sampleRate(), weights);
    std::array<Samples, surroundCase.size()> scaled;
    tone.play(0.0, 20.0, [&](std::span<const float> block) {
        std::array<std::span<const float>, scaled.size()> channels;
        for (std::size_t c = 0; c < scaled.size(); ++c) {
            const auto gain = static_cast<float>(std::pow(10.0, surroundCase[c].peakDB / 20.0));
            scaled[c].assign(block.begin(), block.end());
            std::ranges::transform(scaled[c], scaled[c].begin(),
                                   [gain](float sample) { return gain * sample; });
            channels[c] = scaled[c];
        }
        meter.process(channels);
    });
    return meter.readings().integrated;
}

Range readOver(const UnitTone& tone, const Programme& programme, LoudnessMetric metric,
               double fromSeconds) {
    StereoLoudness stereo(tone);
    Range range;
    stereo.play(programme, [&] {
        if (stereo.seconds() >= fromSeconds) {
            range.take(stereo.readings()[metric]);
        }
    });
    return range;
}

template <class Segment>
Range overSegments(const UnitTone& tone, Segment segment, LoudnessMetric metric) {
    Range range;
    for (int i = 0; i < segmentCount; ++i) {
        StereoLoudness stereo(tone);
        stereo.play(segment(i));
        range.take(stereo.readings()[metric]);
    }
    return range;
}

// Of one meter that all segments go through: its maximum after each, re what it should be.
template <class Segment>
Range overRisingSegments(const UnitTone& tone, Segment segment, LoudnessMetric metric) {
    Range range;
    StereoLoudness stereo(tone);
    for (int i = 0; i < segmentCount; ++i) {
        stereo.play(segment(i));
        range.take(stereo.readings()[metric] - risingLevel(i));
    }
    return range;
}

void addCases(Rows& rows, const UnitTone& tone) {
    for (const IntegratedCase& c : integratedCases()) {
        StereoLoudness stereo(tone);
        stereo.play(c.programme);
        const LoudnessReadings read = stereo.readings();
        if (c.number <= 2) {
            rows.add(fmt::format("{}: M", c.number), c.loudness, read.momentary);
            rows.add(fmt::format("{}: S", c.number), c.loudness, read.shortTerm);
        }
        rows.add(fmt::format("{}: I", c.number), c.loudness, read.integrated);
    }
    rows.add("6: I, 5.0 channels", -23.0, surroundLoudness(tone));
    rows.addUnmeasured("7: I", -23.0);
    rows.addUnmeasured("8: I", -23.0);
    rows.add("9: S after 3 s", -23.0,
             readOver(tone, constantShortTerm(), LoudnessMetric::shortTerm, 3.0));
    rows.add("10: max S of 20", -23.0,
             overSegments(tone, shortTermSegment, LoudnessMetric::shortTermMax));
    rows.add("11: max S re -38 … -19", 0.0,
             overRisingSegments(tone, risingShortTermSegment, LoudnessMetric::shortTermMax));
    rows.add("12: M after 1 s", -23.0,
             readOver(tone, constantMomentary(), LoudnessMetric::momentary, 1.0));
    rows.add("13: max M of 20", -23.0,
             overSegments(tone, momentarySegment, LoudnessMetric::momentaryMax), true);
    rows.add("14: max M re -38 … -19", 0.0,
             overRisingSegments(tone, risingMomentarySegment, LoudnessMetric::momentaryMax), true);
}

}  // namespace

Chapter programmeLoudness() {
    Table table{.title = "Momentary, short-term and integrated loudness",
                .clause = "EBU Tech 3341 (2016), table 1, cases 1 to 14",
                .text =
                    "Tones of 1 kHz in both channels, levels and lengths as the table gives them. "
                    "Cases 9 and 12 are read at the end of every block, the lowest and the highest "
                    "of all; cases 10, 11, 13 and 14 have twenty segments.",
                .labelHeading = "Case",
                .unit = "LUFS"};
    table.columns = rateColumns(loudnessRates);
    Rows rows;
    for (const double rate : loudnessRates) {
        rows.begin();
        addCases(rows, UnitTone(rate));
    }
    table.rows = rows.take();
    return {
        .title = "Programme loudness (EBU Tech 3341)",
        .text =
            "Loudness after ITU-R BS.1770-4 and EBU R 128 of a stereo channel. The library takes "
            "five channels for case 6; the program itself measures mono and stereo.",
        .exceptions =
            {"The largest momentary loudness of a tone of 400 ms (Tech 3341, cases 13 and "
             "14) loses up to 0.46 LU: a momentary block ends each 100 ms, as the "
             "standard's gating blocks do, so that a tone that begins between two steps "
             "fills no block wholly."},
        .tables = {std::move(table)}};
}

}  // namespace TarvaneConformance
