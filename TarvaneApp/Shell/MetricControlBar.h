// The row above a sound level readout: channel, unit, and what is measured.
#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "ChannelDisplaySettings.h"
#include "Core/UUID.h"

class QLabel;

namespace TarvaneApp {

class ChannelPickerMenu;
class CompactToggleButton;
class MeterEngine;
class ReadoutUnitPicker;
class SegmentedPicker;

class MetricControlBar final : public QWidget {
    Q_OBJECT
  public:
    /// With a fixed channel, that one; without, the one that the main window's meter shows.
    MetricControlBar(MeterEngine& engine, std::optional<TarvaneKit::UUID> fixedChannelID,
                     QWidget* parent = nullptr);

  private:
    template <class E>
    struct Toggle {
        E value;
        CompactToggleButton* button;
    };
    template <class E>
    using ToggleRow = std::vector<Toggle<E>>;

    template <class E>
    ToggleRow<E> makeRow(QWidget* group, const char* what, E ChannelDisplaySettings::*field);
    void channelChanged();
    void showDisplay();
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    std::optional<TarvaneKit::UUID> fixedChannelID_;
    ReadoutUnitPicker* unitPicker_;
    SegmentedPicker* modePicker_;
    QWidget* splGroup_;
    QWidget* peakGroup_;
    QLabel* leqNote_;
    ToggleRow<TarvaneKit::Weighting> splWeightings_;
    ToggleRow<TarvaneKit::TimeWeighting> splTimeWeightings_;
    ToggleRow<TarvaneKit::Weighting> peakWeightings_;
};

}  // namespace TarvaneApp
