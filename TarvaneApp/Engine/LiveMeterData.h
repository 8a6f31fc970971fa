// What the displays of a channel draw. Written by the engine's publication, read by the views,
// all on the main thread. There is one signal for all of it, sent once per publication.
#pragma once

#include <QObject>
#include <limits>
#include <vector>

#include "Core/RGBAColor.h"
#include "Metrics/InputClipState.h"
#include "Metrics/TrafficLightConfig.h"

namespace TarvaneApp {

class LiveMeterData : public QObject {
    Q_OBJECT
  public:
    /// The lowest level of the input meter.
    static constexpr double inputMeterFloorDBFS = -60.0;

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
    TarvaneKit::InputClipState inputClipState = TarvaneKit::InputClipState::none;
    double inputPeakDBFS = inputMeterFloorDBFS;
    double inputPeakHoldDBFS = inputMeterFloorDBFS;

  Q_SIGNALS:
    /// Sent ahead of the writes, so that several writes make one repaint: a watcher schedules
    /// its redraw and reads nothing yet.
    void willChange();
};

}  // namespace TarvaneApp
