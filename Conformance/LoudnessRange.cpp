#include <fmt/format.h>

#include <utility>

#include "Chapters.h"
#include "Columns.h"
#include "LoudnessUnderTest.h"

namespace TarvaneConformance {

using namespace TarvaneKit::Testing;

Chapter loudnessRange() {
    Table table{.title = "Loudness range",
                .clause = "EBU Tech 3342 (2016), table 1",
                .text = "Steps of 20 s of a 1 kHz tone in both channels.",
                .labelHeading = "Case",
                .unit = "LU"};
    for (const RangeCase& c : rangeCases()) {
        table.rows.push_back({.label = fmt::format("{}", c.number),
                              .goal = c.rangeLU,
                              .limits = Limits::within(rangeToleranceLU)});
    }
    table.columns = rateColumns(loudnessRates);
    for (const double rate : loudnessRates) {
        const UnitTone tone(rate);
        const auto cases = rangeCases();
        for (std::size_t i = 0; i < cases.size(); ++i) {
            StereoLoudness stereo(tone);
            stereo.play(cases[i].programme);
            table.rows[i].measured.push_back(stereo.readings().range);
        }
    }
    for (const auto& [number, goal] : {std::pair{5, 5.0}, std::pair{6, 15.0}}) {
        table.rows.push_back({.label = fmt::format("{}", number),
                              .goal = goal,
                              .limits = Limits::within(rangeToleranceLU),
                              .remark = "a recording of the EBU's, not part of this tree"});
    }
    return {
        .title = "Loudness range (EBU Tech 3342)",
        .text =
            "The range is taken from a histogram of 0.1 LU, of short-term blocks that begin each "
            "100 ms.",
        .tables = {std::move(table)}};
}

}  // namespace TarvaneConformance
