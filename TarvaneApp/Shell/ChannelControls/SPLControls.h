// What a channel's level meter measures, as rows of buttons: SPL, Peak or Leq, and the weightings
// of each.
#pragma once

#include <QWidget>
#include <vector>

#include "Core/UUID.h"
#include "Records/ChannelDisplaySettings.h"

class QLabel;

namespace TarvaneApp {

class CompactToggleButton;
class MeterEngine;
class SegmentedPicker;

class SPLControls final : public QWidget {
    Q_OBJECT
  public:
    SPLControls(MeterEngine& engine, const TarvaneKit::UUID& channelID, QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);

    /// Between its groups and their dividers.
    void setSpacing(int spacing);
    int widthWith(int spacing) const;

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
    void showDisplay();

    MeterEngine& engine_;
    TarvaneKit::UUID channelID_;
    SegmentedPicker* modePicker_;
    QWidget* splGroup_;
    QWidget* peakGroup_;
    QLabel* leqNote_;
    ToggleRow<TarvaneKit::Weighting> splWeightings_;
    ToggleRow<TarvaneKit::TimeWeighting> splTimeWeightings_;
    ToggleRow<TarvaneKit::Weighting> peakWeightings_;
};

}  // namespace TarvaneApp
