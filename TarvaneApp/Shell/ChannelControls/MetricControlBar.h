// The row above a readout: channel, unit, and what is measured.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

class QHBoxLayout;

namespace TarvaneApp {

class ChannelPickerMenu;
class LoudnessControls;
class MeterEngine;
class ReadoutUnitPicker;
class SPLControlMenus;
class SPLControls;

class MetricControlBar final : public QWidget {
    Q_OBJECT
  public:
    /// For the fixed channel, or without one for the channel that the main window's meter shows.
    MetricControlBar(MeterEngine& engine, std::optional<TarvaneKit::UUID> fixedChannelID,
                     QWidget* parent = nullptr);

    /// As narrow as the smallest meter window: the controls shrink to fit.
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void channelChanged();
    /// The first of these that there is room for.
    enum class Fit { roomy, close, menus };

    static int spacingOf(Fit fit);
    Fit fit() const;
    int widthOf(Fit fit) const;
    void arrange();
    void limitChannelName();
    bool picksChannel() const;
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    std::optional<TarvaneKit::UUID> fixedChannelID_;
    QHBoxLayout* row_;
    ChannelPickerMenu* channelPicker_ = nullptr;
    ReadoutUnitPicker* unitPicker_;
    QWidget* divider_;
    SPLControls* splControls_;
    SPLControlMenus* splMenus_;
    LoudnessControls* loudnessControls_;
};

}  // namespace TarvaneApp
