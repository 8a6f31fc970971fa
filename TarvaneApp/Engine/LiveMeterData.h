// What the displays of a channel draw. Written by the engine's publication, read by the views,
// all on the main thread. There is one signal for all of it, sent once per publication.
#pragma once

#include <QObject>
#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <vector>

#include "Core/RGBAColor.h"
#include "DSP/RingAlert.h"
#include "Metrics/InputClipState.h"
#include "Metrics/LoudnessReadings.h"
#include "Metrics/TrafficLightConfig.h"
#include "Records/LostAudio.h"

namespace TarvaneApp {

class LiveMeterData : public QObject {
    Q_OBJECT
  public:
    /// The lowest level of the input meter.
    static constexpr double inputMeterFloorDBFS = -60.0;
    static constexpr double ringAlertHoldSeconds = 3.0;
    /// Two minutes at 60 rows a second.
    static constexpr int spectrogramMaxHistoryRows = 7200;

    /// The spectrum, as `ChannelFrame::RTA` tells it; empty before the first.
    std::vector<double> bandLevelsDB;
    std::vector<double> bandPeakHoldDB;
    std::vector<double> lineSpectrumDB;
    std::vector<double> linePeakHoldDB;
    /// Calibrated level of the displayed metric; minus infinity where there is none.
    double currentSPLValueDB = -std::numeric_limits<double>::infinity();
    double minSPLValueDB = std::numeric_limits<double>::infinity();
    double maxSPLValueDB = -std::numeric_limits<double>::infinity();
    TarvaneKit::RGBAColor trafficLightColor =
        TarvaneKit::TrafficLightConfig::defaultSPL().belowAllColor;
    /// Progress of the user's Leq, 0 to 1.
    double leqElapsedFraction = 0.0;
    /// Left and right value of a stereo channel, else empty.
    std::vector<double> sideSPLValuesDB;
    /// Absent while the channel measures no loudness.
    std::optional<TarvaneKit::LoudnessReadings> loudness;
    TarvaneKit::InputClipState inputClipState = TarvaneKit::InputClipState::none;
    double inputPeakDBFS = inputMeterFloorDBFS;
    double inputPeakHoldDBFS = inputMeterFloorDBFS;
    /// The ring that sounds right now.
    std::optional<TarvaneKit::RingAlert> currentRingAlert;
    /// The last one, for a while after it has stopped.
    std::optional<TarvaneKit::RingAlert> heldRingAlert;
    /// Oldest first. Once there are very many, the last stands for all that follow.
    std::vector<LostAudio> lostAudio;
    /// Rows of 1024 levels, newest last.
    std::deque<std::vector<float>> spectrogramHistory;
    /// All rows ever appended: how far the view has to scroll.
    std::int64_t spectrogramRowsAdded = 0;
    /// Raised when the level history took a point or was reset.
    int levelHistoryRevision = 0;

  Q_SIGNALS:
    /// Sent ahead of the writes, so that several writes make one repaint: a watcher schedules
    /// its redraw and reads nothing yet.
    void willChange();
};

}  // namespace TarvaneApp
