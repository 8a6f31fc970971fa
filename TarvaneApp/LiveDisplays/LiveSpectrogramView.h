// The spectrogram of a channel on the screen: it fills the picture's record from the engine and
// the channel's live data once per publication, and scrolls back by a drag or the arrow keys. It
// requests rows from the engine only while it is on screen. Main thread.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"
#include "Displays/Spectrogram/SpectrogramRaster.h"
#include "Displays/Spectrogram/SpectrogramStatusBadge.h"
#include "Displays/Spectrogram/SpectrogramView.h"
#include "Engine/ChannelDemand.h"
#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveBinding.h"

namespace TarvaneApp {

class MeterEngine;

class LiveSpectrogramView final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    /// The engine outlives the view. A channel that doesn't exist any more shows the main input.
    LiveSpectrogramView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                        QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);

    const SpectrogramView& view() const { return view_; }
    /// How many rows were coloured so far.
    std::int64_t rowsPainted() const { return raster_.rowsPainted(); }

    QSize minimumSizeHint() const override { return {160, 80}; }
    std::vector<SpokenPart> spokenParts() const override;
    QAccessible::Role spokenRole() const override { return QAccessible::Chart; }

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void contextChanged();
    void channelResolved();
    void registerDemand();
    void refresh();
    void resumeLive();
    void scrollBack(double pixels);
    SpectrogramStatusBadge badge() const { return {view_.scrollState.rowOffset == 0}; }

    MeterEngine& engine_;
    TarvaneKit::UUID requestedChannelID_;
    TarvaneKit::UUID channelID_;
    LiveBinding binding_;
    ChannelDemandRegistration demand_;
    std::optional<QPointF> pressedAt_;
    bool isBadgePressed_ = false;

    SpectrogramView view_;
    SpectrogramRaster raster_;
};

}  // namespace TarvaneApp
