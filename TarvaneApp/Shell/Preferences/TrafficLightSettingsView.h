// Preferences, Traffic Light: the thresholds and colours of readings in dB SPL and dBFS, and the
// colours of those in LUFS.
#pragma once

#include "Metrics/TrafficLightConfig.h"
#include "Records/ThresholdEditing.h"
#include "Shell/Forms/Form.h"

namespace TarvaneApp {

class MeterEngine;
template <class T>
class Setting;

class TrafficLightSettingsView final : public Form {
    Q_OBJECT
  public:
    explicit TrafficLightSettingsView(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void addThresholds(const QString& title, Setting<TarvaneKit::TrafficLightConfig>& config,
                       const ThresholdRange& range,
                       const TarvaneKit::TrafficLightConfig& defaultConfig);
    void addLoudness();

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
