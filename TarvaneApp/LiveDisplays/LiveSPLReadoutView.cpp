#include "LiveDisplays/LiveSPLReadoutView.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <limits>

#include "Displays/Readouts/ClipBadge.h"
#include "Displays/Readouts/ReadoutPlate.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

using TarvaneKit::InputClipState;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::LoudnessReadings;
using TarvaneKit::RGBAColor;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;

namespace {

constexpr double noValue = -std::numeric_limits<double>::infinity();

// A side at or below this is silence and shows no number.
constexpr double silentSideDB = -200.0;

// The digital peak's own thresholds, on the bar alone.
constexpr double barRedFromDBFS = -3.0;
constexpr double barYellowFromDBFS = -12.0;

// How often a screen reader is notified of a new value; on request it always gets the newest.
constexpr int announcementMilliseconds = 1000;

RGBAColor barColor(double peakDBFS, bool isClipping) {
    if (isClipping || peakDBFS >= barRedFromDBFS) {
        return TarvaneKit::SignalColors::red;
    }
    return peakDBFS >= barYellowFromDBFS ? TarvaneKit::SignalColors::yellow
                                         : TarvaneKit::SignalColors::green;
}

// Of "PEAK dBFS", not every letter a capital.
QString barName(const LevelBarView& bar) {
    return QString(bar.unitLabel).replace(QStringLiteral("PEAK"), QStringLiteral("Peak"));
}

QString barUnit(const LevelBarView& bar) {
    const QString peak = QStringLiteral("PEAK ");
    return bar.unitLabel.startsWith(peak) ? bar.unitLabel.mid(peak.size()) : bar.unitLabel;
}

// What a readout draws besides the large value, its label and the badge.
struct DrawnValue {
    QString name;
    QString text;
    QRectF rect;
};

std::vector<DrawnValue> valuesOf(const SPLReadoutView& view, const SPLReadoutGeometry& geometry) {
    const QString unit = levelUnit(view.isCalibrated, view.showsDBFS);
    const auto side = [&](std::size_t index) {
        return view.sideValuesDB.size() == 2 ? spokenLevel(view.sideValuesDB[index], unit)
                                             : QString();
    };
    const QString progress =
        view.leqElapsedFraction
            ? QString::number(std::floor(100.0 * view.progress())) + QStringLiteral(" %")
            : QString();
    return {
        {QStringLiteral("MIN"), spokenLevel(view.minValueDB, unit), geometry.min},
        {QStringLiteral("MAX"), spokenLevel(view.maxValueDB, unit), geometry.max},
        {QStringLiteral("L"), side(0), geometry.sides},
        {QStringLiteral("R"), side(1), geometry.sides},
        {QStringLiteral("Leq progress"), progress, geometry.progress},
    };
}

std::vector<DrawnValue> valuesOf(const LoudnessReadoutView& view,
                                 const LoudnessReadoutGeometry& geometry) {
    std::vector<DrawnValue> values{
        {QStringLiteral("Target"),
         spokenLevel(view.target.targetLUFS, loudnessUnit(LoudnessMetric::integrated)),
         geometry.target},
        {QStringLiteral("True peak"),
         spokenLevel(view.readings.truePeakMax, loudnessUnit(LoudnessMetric::truePeakMax)),
         geometry.truePeak},
    };
    for (std::size_t i = 0; i < geometry.readings.size(); ++i) {
        const LoudnessMetric metric = LoudnessReadoutView::rowMetrics[i];
        values.push_back({displayLabel(metric),
                          spokenLevel(view.readings[metric], loudnessUnit(metric)),
                          geometry.readings[i]});
    }
    return values;
}

}  // namespace

LiveSPLReadoutView::LiveSPLReadoutView(MeterEngine& engine, const UUID& channelID, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      requestedChannelID_(channelID),
      channelID_(engine.resolvedChannelID(channelID)),
      binding_(*this, [this] { refresh(); }),
      resetButton_(new QPushButton(this)) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    resetButton_->setFocusPolicy(Qt::TabFocus);
    resetButton_->setFont(Typeface::installed().systemFont(Theme::Text::caption));
    connect(resetButton_, &QPushButton::clicked, this, [this] { reset(); });
    showResetButton();
    binding_.bind(engine_, {channelID_});
    followChannels(
        engine.channelChanges(), this,
        [this](const UUID& id) { return id == requestedChannelID_ || id == channelID_; },
        [this] { contextChanged(); });
    refresh();
}

void LiveSPLReadoutView::setChannelID(const UUID& channelID) {
    requestedChannelID_ = channelID;
    contextChanged();
}

const LiveMeterData& LiveSPLReadoutView::live() const {
    return engine_.meterChannel(channelID_).live;
}

void LiveSPLReadoutView::contextChanged() {
    const UUID resolved = engine_.resolvedChannelID(requestedChannelID_);
    if (resolved != channelID_) {
        channelID_ = resolved;
        binding_.bind(engine_, {channelID_});
    }
    const auto info = engine_.channelInfo(channelID_);
    const SPLMetric metric = engine_.displayedMetric(channelID_);
    context_ = {
        .metricLabel = displayLabel(metric),
        .isLeq = std::holds_alternative<SPLMetric::Leq>(metric.reading),
        .measuresLoudness = info && info->measuresLoudness,
        .isCalibrated = engine_.isCalibrated(channelID_),
        .showsDBFS = engine_.display(channelID_).showsDBFS,
        .isRunning = engine_.isRunning() && engine_.meterChannel(channelID_).hasProcessor(),
        .showsLevelBar = engine_.splMeterShowsLevelBar(),
        .displayOffsetDB = engine_.splReadoutDisplayOffsetDB(channelID_),
        .barOffsetDB = info && engine_.levelUnitLabel(channelID_) == "dB"
                           ? info->calibration.broadbandOffsetDB()
                           : 0.0,
    };
    binding_.schedule();
}

SPLReadoutView LiveSPLReadoutView::currentReadout() const {
    const LiveMeterData& now = live();
    const double offset = context_.displayOffsetDB;
    SPLReadoutView view{
        .valueDB = now.currentSPLValueDB - offset,
        .metricLabel = context_.metricLabel,
        .color = now.trafficLightColor,
        .isCalibrated = context_.isCalibrated,
        .showsDBFS = context_.showsDBFS,
        .leqElapsedFraction = context_.isLeq && context_.isRunning
                                  ? std::optional(now.leqElapsedFraction)
                                  : std::nullopt,
        .minValueDB = now.minSPLValueDB - offset,
        .maxValueDB = now.maxSPLValueDB - offset,
        .clipState = now.inputClipState,
        .lostAudio = LostAudioTotal::of(now.lostAudio),
        .sideValuesDB = {},
        .offersReset = true,
        .hasLevelBar = context_.showsLevelBar,
    };
    for (const double side : now.sideSPLValuesDB) {
        view.sideValuesDB.push_back(side <= silentSideDB ? noValue : side - offset);
    }
    return view;
}

LoudnessReadoutView LiveSPLReadoutView::currentLoudness() const {
    const LiveMeterData& now = live();
    LoudnessReadoutView view{
        .readings = now.loudness.value_or(LoudnessReadings{}),
        .headline = engine_.loudnessReadout(),
        .target = engine_.loudnessTarget(),
        .colors = engine_.loudnessColors(),
        .color = {},
        .clipState = now.inputClipState,
        .lostAudio = LostAudioTotal::of(now.lostAudio),
        .offersReset = true,
        .hasLevelBar = context_.showsLevelBar,
    };
    view.color = view.judgement(view.headline);
    return view;
}

LevelBarView LiveSPLReadoutView::currentLoudnessBar() const {
    const LoudnessReadings readings = live().loudness.value_or(LoudnessReadings{});
    const LoudnessTarget& target = engine_.loudnessTarget();
    return {
        .valueDB = readings.momentary,
        .markerDB = readings.shortTerm,
        .range = {-60.0, 0.0},
        .color = target.trafficLight(engine_.loudnessColors()).color(readings.momentary),
        .unitLabel = QStringLiteral("LUFS"),
        .targetBand = LevelBarView::Range{target.targetLUFS - target.toleranceLU,
                                          target.targetLUFS + target.toleranceLU},
        .legend = QStringLiteral("BAR MOMENTARY · LINE SHORT-TERM"),
    };
}

LevelBarView LiveSPLReadoutView::currentLevelBar() const {
    const LiveMeterData& now = live();
    const double offset = context_.barOffsetDB;
    const bool showsMarker =
        context_.isRunning && now.inputPeakHoldDBFS > LiveMeterData::inputMeterFloorDBFS;
    const bool readsSPL = context_.isCalibrated && !context_.showsDBFS;
    return {
        .valueDB = context_.isRunning ? now.inputPeakDBFS + offset : noValue,
        .markerDB = showsMarker ? now.inputPeakHoldDBFS + offset : noValue,
        .range = {offset + LiveMeterData::inputMeterFloorDBFS, offset},
        .color = barColor(now.inputPeakDBFS, now.inputClipState == InputClipState::active),
        .unitLabel = readsSPL ? QStringLiteral("PEAK dB SPL") : QStringLiteral("PEAK dBFS"),
        .targetBand = std::nullopt,
        .legend = QStringLiteral("LINE PEAK HOLD"),
    };
}

// Replaces the record. Returns what looks different, or nothing where the parts have moved.
template <class View>
std::optional<QRegion> LiveSPLReadoutView::put(View view) {
    auto* placed = std::get_if<Placed<View>>(&readout_);
    if (placed == nullptr) {
        readout_ = Placed<View>{std::move(view), {}};
        showResetButton();
        return std::nullopt;
    }
    const View before = std::exchange(placed->view, std::move(view));
    return sameShape(before, placed->view)
               ? std::optional(changedArea(before, placed->view, placed->geometry))
               : std::nullopt;
}

void LiveSPLReadoutView::refresh() {
    const bool isLoudness = context_.measuresLoudness;
    auto changed = isLoudness ? put(currentLoudness()) : put(currentReadout());
    std::optional<LevelBarView> bar;
    if (context_.showsLevelBar) {
        bar = isLoudness ? currentLoudnessBar() : currentLevelBar();
    }
    const auto barBefore = std::exchange(levelBar_, std::move(bar));
    if (!changed || barBefore.has_value() != levelBar_.has_value()) {
        updateGeometryRecords();
        order(rect());
    } else {
        changed->translate(plate_.topLeft().toPoint());
        if (!levelBarRect_.isEmpty()) {
            if (levelBar_->range != barBefore->range) {
                levelBarGeometry_ = TarvaneApp::layout(*levelBar_, levelBarRect_);
            }
            *changed += changedArea(*barBefore, *levelBar_, levelBarGeometry_, levelBarRect_,
                                    devicePixelRatioF());
        }
        order(*changed);
    }
    announce();
}

const ReadoutFrame& LiveSPLReadoutView::frame() const {
    return std::visit([](const auto& placed) -> const ReadoutFrame& { return placed.geometry; },
                      readout_);
}

QString LiveSPLReadoutView::spokenValue() const {
    return std::visit([](const auto& placed) { return placed.view.spokenValue(); }, readout_);
}

void LiveSPLReadoutView::showResetButton() {
    const bool isLoudness = loudness() != nullptr;
    resetButton_->setText(isLoudness ? QStringLiteral("Reset Integration")
                                     : QStringLiteral("Reset Min/Max"));
    resetButton_->setToolTip(isLoudness
                                 ? QStringLiteral("Start a new measurement: clears Integrated, "
                                                  "Loudness Range and True Peak")
                                 : QString());
}

void LiveSPLReadoutView::reset() {
    if (loudness() != nullptr) {
        engine_.resetLoudness(channelID_);
    } else {
        engine_.resetMinMax();
    }
}

void LiveSPLReadoutView::order(const QRegion& area) {
    if (!area.isEmpty()) {
        ++repaintsOrdered_;
        update(area);
    }
}

void LiveSPLReadoutView::announce() {
    if (!QAccessible::isActive() ||
        (sinceAnnounced_.isValid() && sinceAnnounced_.elapsed() < announcementMilliseconds)) {
        return;
    }
    sinceAnnounced_.start();
    QAccessibleValueChangeEvent event(this, spokenValue());
    QAccessible::updateAccessibility(&event);
}

void LiveSPLReadoutView::updateGeometryRecords() {
    plate_ = ReadoutPlate::rect(size());
    std::visit(
        [this](auto& placed) { placed.geometry = TarvaneApp::layout(placed.view, plate_.size()); },
        readout_);
    levelBarRect_ = {};
    if (levelBar_ && !frame().levelBar.isEmpty()) {
        levelBarRect_ = frame().levelBar.translated(plate_.topLeft());
        levelBarGeometry_ = TarvaneApp::layout(*levelBar_, levelBarRect_);
    }
    resetButton_->setVisible(!frame().resetButton.isEmpty());
    resetButton_->setGeometry(frame().resetButton.translated(plate_.topLeft()).toRect());
}

void LiveSPLReadoutView::resizeEvent(QResizeEvent*) {
    updateGeometryRecords();
}

void LiveSPLReadoutView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    ReadoutPlate::paint(painter, plate_, event->rect());
    if (!levelBarRect_.isEmpty() && event->region().intersects(levelBarRect_.toAlignedRect())) {
        paint(painter, *levelBar_, levelBarGeometry_, event->region());
    }
    const QPoint origin = plate_.topLeft().toPoint();
    painter.translate(origin);
    std::visit(
        [&](const auto& placed) {
            paint(painter, placed.view, placed.geometry, event->region().translated(-origin));
        },
        readout_);
}

QString LiveSPLReadoutView::help(const QPointF& place) const {
    const auto* placed = std::get_if<Placed<LoudnessReadoutView>>(&readout_);
    if (placed == nullptr) {
        const auto& [view, geometry] = std::get<Placed<SPLReadoutView>>(readout_);
        return geometry.clipBadge.contains(place) ? ClipBadge{view.clipState, view.lostAudio}.help()
               : geometry.sides.contains(place)   ? QString::fromLatin1(sidesHelp)
                                                  : QString();
    }
    const auto& [view, geometry] = *placed;
    for (std::size_t i = 0; i < geometry.readings.size(); ++i) {
        if (geometry.readings[i].contains(place)) {
            return view.reading(LoudnessReadoutView::rowMetrics[i]).help;
        }
    }
    return geometry.clipBadge.contains(place)  ? ClipBadge{view.clipState, view.lostAudio}.help()
           : geometry.target.contains(place)   ? view.targetHelp()
           : geometry.truePeak.contains(place) ? view.truePeakHelp()
                                               : QString();
}

bool LiveSPLReadoutView::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* request = static_cast<QHelpEvent*>(event);
        const QString text = help(QPointF(request->pos()) - plate_.topLeft());
        if (!text.isEmpty()) {
            QToolTip::showText(request->globalPos(), text, this);
            return true;
        }
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    return QWidget::event(event);
}

// The parts of both readouts, since a widget's parts are fixed for its life; those of the hidden
// readout have no value and no place.
std::vector<SpokenPart> LiveSPLReadoutView::spokenParts() const {
    const auto* spl = std::get_if<Placed<SPLReadoutView>>(&readout_);
    const auto* loudness = std::get_if<Placed<LoudnessReadoutView>>(&readout_);
    const QString name =
        spl != nullptr ? spl->view.metricLabel : displayLabel(loudness->view.headline);
    const QString label = spl != nullptr ? spl->view.labelText() : loudness->view.labelText();
    const ClipBadge badge = spl != nullptr
                                ? ClipBadge{spl->view.clipState, spl->view.lostAudio}
                                : ClipBadge{loudness->view.clipState, loudness->view.lostAudio};
    std::vector<SpokenPart> parts{
        {name, spokenValue(), rect()},
        {QStringLiteral("Reading"), label, spokenPlace(frame().label)},
        {QStringLiteral("Input clipping"), badge.clipText(), spokenPlace(frame().clipBadge)},
        {QStringLiteral("Lost audio"), badge.lostAudioText(),
         badge.clipText().isEmpty() && badge.lost.count > 0 ? spokenPlace(frame().clipBadge)
                                                            : QRect()},
        {levelBar_ ? barName(*levelBar_) : QStringLiteral("Peak"),
         levelBar_ ? spokenLevel(levelBar_->valueDB, barUnit(*levelBar_)) : QString(),
         levelBarRect_.toAlignedRect()},
    };
    const auto add = [&](const std::vector<DrawnValue>& values, bool isShown) {
        for (const DrawnValue& value : values) {
            parts.push_back(isShown ? SpokenPart{value.name, value.text, spokenPlace(value.rect)}
                                    : SpokenPart{value.name, {}, {}});
        }
    };
    add(spl != nullptr ? valuesOf(spl->view, spl->geometry) : valuesOf(SPLReadoutView{}, {}),
        spl != nullptr);
    add(loudness != nullptr ? valuesOf(loudness->view, loudness->geometry)
                            : valuesOf(LoudnessReadoutView{}, {}),
        loudness != nullptr);
    return parts;
}

// Empty for a part that isn't drawn.
QRect LiveSPLReadoutView::spokenPlace(const QRectF& part) const {
    return part.isEmpty() ? QRect() : part.translated(plate_.topLeft()).toAlignedRect();
}

}  // namespace TarvaneApp
