// The sound level readout of a channel on the screen: it fills the records of readout and level
// bar from the engine and the channel's live data, once per publication, and repaints only the
// parts that look different. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <optional>

#include "Core/UUID.h"
#include "LiveAccessibility.h"
#include "LiveBinding.h"
#include "Readouts/LevelBarView.h"
#include "Readouts/SPLReadoutView.h"

class QPushButton;

namespace TarvaneApp {

class LiveMeterData;
class MeterEngine;

class LiveSPLReadoutView final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    /// The engine outlives the view.
    LiveSPLReadoutView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                       QWidget* parent = nullptr);

    /// A channel that doesn't exist any more shows the main input.
    void setChannelID(const TarvaneKit::UUID& channelID);

    const SPLReadoutView& readout() const { return readout_; }
    /// Absent while the bar is switched off.
    const std::optional<LevelBarView>& levelBar() const { return levelBar_; }
    /// How many parts of the view were ordered to be drawn anew since it was made.
    int repaintsOrdered() const { return repaintsOrdered_; }

    std::vector<SpokenPart> spokenParts() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    // What of the records follows from settings alone, and changes only with them.
    struct Context {
        QString metricLabel;
        bool isLeq = false;
        bool isCalibrated = false;
        bool showsDBFS = false;
        bool isRunning = false;
        bool showsLevelBar = false;
        double displayOffsetDB = 0.0;  // taken off the readings
        double barOffsetDB = 0.0;      // added to the digital peaks
    };

    void contextChanged();
    void refresh();
    SPLReadoutView currentReadout() const;
    LevelBarView currentLevelBar() const;
    void updateGeometryRecords();
    void order(const QRegion& area);
    void announce();
    const LiveMeterData& live() const;

    MeterEngine& engine_;
    TarvaneKit::UUID requestedChannelID_;
    TarvaneKit::UUID channelID_;
    LiveBinding binding_;
    Context context_;

    SPLReadoutView readout_;
    std::optional<LevelBarView> levelBar_;
    QRectF plate_;
    QRectF readoutRect_;
    QRectF levelBarRect_;
    SPLReadoutGeometry geometry_;
    LevelBarGeometry levelBarGeometry_;
    int repaintsOrdered_ = 0;
    QElapsedTimer sinceAnnounced_;
    QPushButton* resetButton_;
};

}  // namespace TarvaneApp
