// Spectrogram rows as a measurement gives them, to draw in tests, benchmarks and pictures: falling
// noise, a rising tone, a steady one, and a beat.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "DSP/SpectrogramRow.h"
#include "Displays/Spectrogram/SpectrogramView.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneTests {

using SpectrogramHistory = std::vector<std::vector<float>>;

/// Row `index` of a history that has no end; 60 a second.
inline std::vector<float> spectrogramRow(int index, double roughnessDB = 3.0) {
    const std::vector<double>& frequencies = TarvaneKit::spectrogramFrequencies();
    Roughness roughness(static_cast<std::uint32_t>(index) + 1U);
    const double risingHz = 60.0 * std::pow(200.0, (index % 240) / 240.0);
    const double beatDB = index % 30 < 4 ? 30.0 : 0.0;
    std::vector<float> row;
    row.reserve(frequencies.size());
    for (const double frequencyHz : frequencies) {
        double level =
            55.0 - 8.0 * std::log10(frequencyHz / 1000.0) + roughnessDB * roughness.next();
        if (frequencyHz < 150.0) {
            level += beatDB;
        }
        for (const auto& [toneHz, toneDB] : {std::pair{risingHz, 98.0}, {3150.0, 85.0}}) {
            const double octaves = std::log2(frequencyHz / toneHz);
            level = std::max(level, toneDB - 9000.0 * octaves * octaves);
        }
        row.push_back(static_cast<float>(level));
    }
    return row;
}

inline SpectrogramHistory spectrogramHistory(int count, double roughnessDB = 3.0) {
    SpectrogramHistory rows;
    for (int i = 0; i < count; ++i) {
        rows.push_back(spectrogramRow(i, roughnessDB));
    }
    return rows;
}

/// The history outlives the view.
inline TarvaneApp::SpectrogramView spectrogramOf(const SpectrogramHistory& history,
                                                 double timeSpanSeconds = 2.0) {
    TarvaneApp::SpectrogramView view;
    view.history = TarvaneApp::SpectrogramRows(history);
    view.rowsAdded = static_cast<std::int64_t>(history.size());
    view.frequencies = TarvaneKit::spectrogramFrequencies();
    view.timeSpanSeconds = timeSpanSeconds;
    return view;
}

}  // namespace TarvaneTests
