// The readout of a channel on the screen, of its level or its loudness, above the level bar. It
// fills their records from the engine and the channel's live data, once per publication, and
// repaints only the parts that look different. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <optional>
#include <utility>
#include <variant>

#include "Core/UUID.h"
#include "Displays/Readouts/LevelBarView.h"
#include "Displays/Readouts/LoudnessReadoutView.h"
#include "Displays/Readouts/SPLReadoutView.h"
#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveBinding.h"

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

    /// Of a channel that measures levels.
    const SPLReadoutView& readout() const {
        return std::get<Placed<SPLReadoutView>>(readout_).view;
    }
    /// Of a channel that measures loudness; null for any other.
    const LoudnessReadoutView* loudness() const {
        const auto* placed = std::get_if<Placed<LoudnessReadoutView>>(&readout_);
        return placed != nullptr ? &placed->view : nullptr;
    }
    /// Absent while the bar is switched off.
    const std::optional<LevelBarView>& levelBar() const { return levelBar_; }
    /// Where the shared parts are, within the plate.
    const ReadoutFrame& frame() const;
    /// How many repaints of parts were requested since the view was made.
    int repaintsOrdered() const { return repaintsOrdered_; }

    std::vector<SpokenPart> spokenParts() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    // A readout, and where its parts are.
    template <class View>
    struct Placed {
        View view;
        decltype(TarvaneApp::layout(std::declval<const View&>(), QSizeF())) geometry;
    };

    // The part of the records that depends on settings alone.
    struct Context {
        QString metricLabel;
        bool isLeq = false;
        bool measuresLoudness = false;
        bool isCalibrated = false;
        bool showsDBFS = false;
        bool isRunning = false;
        bool showsLevelBar = false;
        double displayOffsetDB = 0.0;  // subtracted from the readings
        double barOffsetDB = 0.0;      // added to the digital peaks
    };

    void contextChanged();
    void refresh();
    SPLReadoutView currentReadout() const;
    LoudnessReadoutView currentLoudness() const;
    LevelBarView currentLevelBar() const;
    LevelBarView currentLoudnessBar() const;
    template <class View>
    std::optional<QRegion> put(View view);
    QString spokenValue() const;
    QString help(const QPointF& place) const;
    QRect spokenPlace(const QRectF& part) const;
    void updateGeometryRecords();
    void showResetButton();
    void reset();
    void order(const QRegion& area);
    void announce();
    const LiveMeterData& live() const;

    MeterEngine& engine_;
    TarvaneKit::UUID requestedChannelID_;
    TarvaneKit::UUID channelID_;
    LiveBinding binding_;
    Context context_;

    std::variant<Placed<SPLReadoutView>, Placed<LoudnessReadoutView>> readout_;
    std::optional<LevelBarView> levelBar_;
    QRectF plate_;
    QRectF levelBarRect_;
    LevelBarGeometry levelBarGeometry_;
    int repaintsOrdered_ = 0;
    QElapsedTimer sinceAnnounced_;
    QPushButton* resetButton_;
};

}  // namespace TarvaneApp
