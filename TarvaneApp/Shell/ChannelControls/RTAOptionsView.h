// What the analyzer shows of a channel and how: colour, view, bands, peak hold, target curve,
// ring-out. The content of the popover under the analyzer's options button.
#pragma once

#include <QWidget>
#include <functional>

#include "Core/UUID.h"

class QCheckBox;

namespace TarvaneApp {

class ColorSwatches;
class MenuButton;
class MeterEngine;
class SegmentedPicker;
class TargetCurveControls;
struct ChannelDisplaySettings;

class RTAOptionsView final : public QWidget {
    Q_OBJECT
  public:
    /// A channel that doesn't exist any more means the main input.
    RTAOptionsView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                   QWidget* parent = nullptr);

  private:
    void write(const std::function<void(ChannelDisplaySettings&)>& edit);
    void showChannel();
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    const TarvaneKit::UUID requestedChannelID_;
    ColorSwatches* color_;
    SegmentedPicker* viewMode_;
    MenuButton* bands_;
    QCheckBox* peakHold_;
    ColorSwatches* peakColor_;
    QCheckBox* octaveNormalized_;
    TargetCurveControls* targetCurve_;
    QCheckBox* ringOut_;
    MenuButton* sensitivity_;
};

}  // namespace TarvaneApp
