// The level history of a channel on the screen: it fills the graph's record from the engine and
// the channel's recorder, repaints when the recorder has taken a point, and pans and zooms with
// the user's own range, by pointer, touchpad or keys. Main thread.
#pragma once

#include <QWidget>
#include <vector>

#include "Core/UUID.h"
#include "Displays/LevelHistory/LevelHistoryRaster.h"
#include "Displays/LevelHistory/LevelHistoryView.h"
#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveBinding.h"

namespace TarvaneApp {

class MeterEngine;

class LiveLevelHistoryGraph final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    /// The engine outlives the view. A channel that doesn't exist any more shows the main input.
    LiveLevelHistoryGraph(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                          QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);
    /// The channels whose histories lie over it as lines.
    void setOverlayIDs(std::vector<TarvaneKit::UUID> ids);

    const LevelHistoryView& view() const { return view_; }
    /// Whether the user has chosen a range instead of the preset's.
    bool hasOwnRange() const { return view_.viewport.custom.has_value(); }
    void clearOwnRange();
    /// Shows up to a minute around a moment of the session.
    void showMoment(double elapsedSeconds);
    /// How often the picture was drawn.
    int picturesDrawn() const { return raster_.picturesDrawn(); }

    QSize minimumSizeHint() const override { return {160, 80}; }
    std::vector<SpokenPart> spokenParts() const override;
    QAccessible::Role spokenRole() const override { return QAccessible::Chart; }

  Q_SIGNALS:
    /// The history has a new point, or another history is shown.
    void historyChanged();
    void ownRangeChanged();

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void contextChanged();
    void refresh();
    void scroll(const LevelHistoryViewport::Scroll& scroll, double atX);
    double plotFraction(double x) const;
    void rangeMoved(bool staysZoomedIn);

    MeterEngine& engine_;
    TarvaneKit::UUID requestedChannelID_;
    TarvaneKit::UUID channelID_;
    std::vector<TarvaneKit::UUID> requestedOverlayIDs_;
    LiveBinding binding_;
    std::optional<QPointF> pressedAt_;

    LevelHistoryView view_;
    LevelHistoryView shown_;  // as the last picture has it
    LevelHistoryRaster raster_;
};

}  // namespace TarvaneApp
