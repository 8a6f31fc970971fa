// The input meter of a channel on the screen. It follows the channel's publications while it is
// visible, and costs nothing while it isn't. Main thread.
#pragma once

#include <QWidget>

#include "Core/UUID.h"
#include "Displays/Readouts/InputLevelMeterView.h"
#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveBinding.h"

namespace TarvaneApp {

class MeterEngine;

class LiveInputLevelMeterView final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    LiveInputLevelMeterView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                            QWidget* parent = nullptr);

    const InputLevelMeterView& view() const { return view_; }

    QSize sizeHint() const override;
    std::vector<SpokenPart> spokenParts() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void refresh();
    InputLevelMeterView viewOfNow() const;

    MeterEngine& engine_;
    const TarvaneKit::UUID channelID_;
    LiveBinding binding_;
    InputLevelMeterView view_;
    InputLevelMeterGeometry geometry_;
};

}  // namespace TarvaneApp
