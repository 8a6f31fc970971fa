#include "Readouts/LiveSPLReadoutView.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <limits>

#include "LiveFollow.h"
#include "MeterEngine.h"
#include "PixelGrid.h"
#include "Readouts/ClipBadge.h"
#include "Readouts/ReadoutText.h"

namespace TarvaneApp {

using TarvaneKit::InputClipState;
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

// A screen reader is told of a new value at most this often; asked, it always gets the newest.
constexpr int announcementMilliseconds = 1000;

constexpr double plateRadius = 10.0;
constexpr double plateMarginAcross = 16.0;
constexpr double plateMarginBottom = 12.0;
constexpr double barMarginAcross = 16.0;
constexpr double barMarginBottom = 6.0;

// The bar grows with the view, from this size on and up to three times.
constexpr QSizeF barReferenceSize(900.0, 330.0);
constexpr double largestBarScale = 3.0;

double barScale(const QSizeF& size) {
    return std::clamp(std::min(size.width() / barReferenceSize.width(),
                               size.height() / barReferenceSize.height()),
                      1.0, largestBarScale);
}

RGBAColor barColor(double peakDBFS, bool isClipping) {
    if (isClipping || peakDBFS >= barRedFromDBFS) {
        return TarvaneKit::SignalColors::red;
    }
    return peakDBFS >= barYellowFromDBFS ? TarvaneKit::SignalColors::yellow
                                         : TarvaneKit::SignalColors::green;
}

// Whether the parts of the two records stand in the same places.
bool sameShape(const SPLReadoutView& a, const SPLReadoutView& b) {
    return a.labelText() == b.labelText() &&
           valueTemplate(a.isCalibrated, a.showsDBFS) ==
               valueTemplate(b.isCalibrated, b.showsDBFS) &&
           a.leqElapsedFraction.has_value() == b.leqElapsedFraction.has_value() &&
           a.sideValuesDB.size() == b.sideValuesDB.size();
}

QString spoken(double levelDB, const QString& unit) {
    const QString text = levelText(levelDB);
    return std::isfinite(levelDB) ? text + u' ' + unit : text;
}

}  // namespace

LiveSPLReadoutView::LiveSPLReadoutView(MeterEngine& engine, const UUID& channelID, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      requestedChannelID_(channelID),
      channelID_(engine.resolvedChannelID(channelID)),
      binding_(*this, [this] { refresh(); }),
      resetButton_(new QPushButton(QStringLiteral("Reset Min/Max"), this)) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    resetButton_->setFocusPolicy(Qt::TabFocus);
    resetButton_->setFont(Typeface::installed().systemFont(11));
    connect(resetButton_, &QPushButton::clicked, this, [this] {
        if (readout_.onResetMinMax) {
            readout_.onResetMinMax();
        }
    });
    binding_.bind(engine_, {channelID_});
    followAll(
        this, [this] { contextChanged(); }, engine.isRunning, engine.metricMode,
        engine.splWeighting, engine.splTimeWeighting, engine.peakWeighting,
        engine.splReadoutShowsDBFS, engine.splMeterShowsLevelBar, engine.mainInputIsDigital,
        engine.calibration, engine.extraChannels);
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
        .isCalibrated = engine_.isCalibrated(channelID_),
        .showsDBFS = engine_.display(channelID_).showsDBFS,
        .isRunning = engine_.isRunning() && engine_.meterChannel(channelID_).processor != nullptr,
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
        .sideValuesDB = {},
        .onResetMinMax = [this] { engine_.resetMinMax(); },
    };
    for (const double side : now.sideSPLValuesDB) {
        view.sideValuesDB.push_back(side <= silentSideDB ? noValue : side - offset);
    }
    return view;
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

void LiveSPLReadoutView::refresh() {
    const SPLReadoutView before = std::exchange(readout_, currentReadout());
    const auto barBefore = std::exchange(
        levelBar_, context_.showsLevelBar ? std::optional(currentLevelBar()) : std::nullopt);
    if (!sameShape(before, readout_) || barBefore.has_value() != levelBar_.has_value()) {
        updateGeometryRecords();
        order(rect());
    } else {
        QRegion changed = changedArea(before, readout_, geometry_);
        changed.translate(readoutRect_.topLeft().toPoint());
        if (levelBar_) {
            if (levelBar_->range != barBefore->range) {
                levelBarGeometry_ = TarvaneApp::layout(*levelBar_, levelBarRect_);
            }
            changed += changedArea(*barBefore, *levelBar_, levelBarGeometry_, levelBarRect_,
                                   devicePixelRatioF());
        }
        order(changed);
    }
    announce();
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
    QAccessibleValueChangeEvent event(this, readout_.spokenValue());
    QAccessible::updateAccessibility(&event);
}

void LiveSPLReadoutView::updateGeometryRecords() {
    plate_ =
        QRectF(rect()).adjusted(plateMarginAcross, 0.0, -plateMarginAcross, -plateMarginBottom);
    readoutRect_ = plate_;
    levelBarRect_ = QRectF();
    if (levelBar_) {
        const double height = std::round(LevelBarGeometry::naturalHeight * barScale(size()));
        levelBarRect_ =
            QRectF(plate_.left() + barMarginAcross, plate_.bottom() - barMarginBottom - height,
                   plate_.width() - 2.0 * barMarginAcross, height);
        readoutRect_.setBottom(levelBarRect_.top());
        levelBarGeometry_ = TarvaneApp::layout(*levelBar_, levelBarRect_);
    }
    geometry_ = TarvaneApp::layout(readout_, readoutRect_.size());
    resetButton_->setGeometry(
        geometry_.resetButton.translated(readoutRect_.topLeft()).toAlignedRect());
}

void LiveSPLReadoutView::resizeEvent(QResizeEvent*) {
    updateGeometryRecords();
}

void LiveSPLReadoutView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF dirty = event->rect();
    const QRectF inner = plate_.adjusted(plateRadius, plateRadius, -plateRadius, -plateRadius);
    if (inner.contains(dirty)) {
        painter.fillRect(dirty, Theme::panelBackground);
    } else {
        painter.fillRect(dirty, Theme::background);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::panelBackground);
        painter.drawRoundedRect(PixelGrid(painter).snapped(plate_), plateRadius, plateRadius);
    }
    if (levelBar_ && event->region().intersects(levelBarRect_.toAlignedRect())) {
        paint(painter, *levelBar_, levelBarGeometry_, event->region());
    }
    const QPoint origin = readoutRect_.topLeft().toPoint();
    painter.translate(origin);
    paint(painter, readout_, geometry_, event->region().translated(-origin));
}

bool LiveSPLReadoutView::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QPointF place = QPointF(help->pos()) - readoutRect_.topLeft();
        const QString text = geometry_.clipBadge.contains(place)
                                 ? ClipBadge{readout_.clipState}.help()
                             : geometry_.sides.contains(place) ? QString::fromLatin1(sidesHelp)
                                                               : QString();
        if (!text.isEmpty()) {
            QToolTip::showText(help->globalPos(), text, this);
            return true;
        }
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    return QWidget::event(event);
}

std::vector<SpokenPart> LiveSPLReadoutView::spokenParts() const {
    const QString unit = levelUnit(readout_.isCalibrated, readout_.showsDBFS);
    const auto place = [&](const QRectF& rect) {
        return rect.isEmpty() ? QRect() : rect.translated(readoutRect_.topLeft()).toAlignedRect();
    };
    const bool isStereo = readout_.sideValuesDB.size() == 2;
    const auto side = [&](std::size_t index) {
        return isStereo ? spoken(readout_.sideValuesDB[index], unit) : QString();
    };
    const QString progress =
        readout_.leqElapsedFraction
            ? QString::number(std::floor(100.0 * readout_.progress())) + QStringLiteral(" %")
            : QString();
    const QString barUnit = levelBar_ && levelBar_->unitLabel.endsWith(QStringLiteral("SPL"))
                                ? QStringLiteral("dB SPL")
                                : QStringLiteral("dBFS");
    return {
        {readout_.metricLabel, readout_.spokenValue(), rect()},
        {QStringLiteral("MIN"), spoken(readout_.minValueDB, unit), place(geometry_.min)},
        {QStringLiteral("MAX"), spoken(readout_.maxValueDB, unit), place(geometry_.max)},
        {QStringLiteral("Reading"), readout_.labelText(), place(geometry_.label)},
        {QStringLiteral("L"), side(0), place(geometry_.sides)},
        {QStringLiteral("R"), side(1), place(geometry_.sides)},
        {QStringLiteral("Leq progress"), progress, place(geometry_.progress)},
        {QStringLiteral("Input clipping"), ClipBadge{readout_.clipState}.text(),
         place(geometry_.clipBadge)},
        {levelBar_ ? levelBar_->unitLabel : QStringLiteral("PEAK"),
         levelBar_ ? spoken(levelBar_->valueDB, barUnit) : QString(),
         levelBarRect_.toAlignedRect()},
    };
}

}  // namespace TarvaneApp
