#include "LiveDisplays/LiveSpectrumView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "Displays/FocusRing.h"
#include "Displays/Spectrum/SpectrumHover.h"
#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/OverlayAxis.h"
#include "LiveDisplays/Sight.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

// How far an arrow key moves the readout, with and without Shift, in pixels.
constexpr double fineStep = 1.0;
constexpr double coarseStep = 8.0;

}  // namespace

LiveSpectrumView::LiveSpectrumView(MeterEngine& engine, const UUID& channelID, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      requestedChannelID_(channelID),
      channelID_(engine.resolvedChannelID(channelID)),
      binding_(*this, [this] { refresh(); }),
      bannerFade_([this] { update(); }),
      raster_(Theme::background) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    followChannels(
        engine.channelChanges(), this,
        [this](const UUID& id) {
            return id == requestedChannelID_ || id == channelID_ ||
                   std::ranges::find(requestedOverlayIDs_, id) != requestedOverlayIDs_.end();
        },
        [this] { contextChanged(); });
    refresh();
}

void LiveSpectrumView::setChannelID(const UUID& channelID) {
    requestedChannelID_ = channelID;
    contextChanged();
}

void LiveSpectrumView::setOverlayIDs(std::vector<UUID> ids) {
    requestedOverlayIDs_ = std::move(ids);
    contextChanged();
}

// What a channel that is displayed in dBFS has to lose of its calibrated levels.
double LiveSpectrumView::levelOffsetDB(const UUID& channelID) const {
    const auto channel = engine_.channelInfo(channelID);
    return view_.scale == RTAScale::dbfs && channel ? channel->calibration.broadbandOffsetDB()
                                                    : 0.0;
}

void LiveSpectrumView::contextChanged() {
    channelID_ = engine_.resolvedChannelID(requestedChannelID_);
    const ChannelDisplaySettings display = engine_.display(channelID_);
    const SpectrogramRange range = engine_.spectrogramRange(channelID_);
    const auto channel = engine_.channelInfo(channelID_);
    view_.bands = engine_.bands(channelID_);
    view_.sampleRate = engine_.meterChannel(channelID_).sampleRate;
    view_.fftSize = MeterEngine::fftSize;
    view_.viewMode = display.viewMode;
    view_.traceColor = Theme::color(channel ? channel->color : engine_.rtaColor());
    view_.peakColor = Theme::color(display.peakHoldColor);
    view_.showPeakHold = display.showsPeakHold;
    view_.spectrogramFloorDB = range.floorDB;
    view_.spectrogramCeilingDB = range.ceilingDB;
    view_.scale = engine_.rtaScale(channelID_);
    view_.levelOffsetDB = levelOffsetDB(channelID_);
    view_.targetCurve = display.targetCurve();
    view_.targetCurveReferenceDB = view_.scale == RTAScale::dbfs ? display.targetCurveReferenceDBFS
                                                                 : display.targetCurveReferenceDB;
    view_.overlays.clear();
    std::vector<UUID> ids{channelID_};
    for (const UUID& id : requestedOverlayIDs_) {
        const auto overlaid = engine_.channelInfo(id);
        if (id == channelID_ || !overlaid || whyNotOverSpectrum(engine_, channelID_, id)) {
            continue;
        }
        ids.push_back(id);
        view_.overlays.push_back({.id = id,
                                  .color = Theme::color(overlaid->color),
                                  .lineSpectrumDB = {},
                                  .bandLevelsDB = {},
                                  .bands = engine_.bands(id),
                                  .sampleRate = engine_.meterChannel(id).sampleRate,
                                  .levelOffsetDB = levelOffsetDB(id)});
    }
    if (ids != shownIDs_) {
        shownIDs_ = std::move(ids);
        binding_.bind(engine_, shownIDs_);
        registerDemand();
    }
    binding_.schedule();
}

void LiveSpectrumView::registerDemand() {
    if (isSeen(*this)) {
        demand_.update(engine_, shownIDs_, ChannelDemand::rta);
    } else {
        demand_.clear();
    }
}

void LiveSpectrumView::showEvent(QShowEvent*) {
    registerDemand();
}

// Also runs when the window is minimised.
void LiveSpectrumView::hideEvent(QHideEvent*) {
    demand_.clear();
}

void LiveSpectrumView::refresh() {
    if (isSeen(*this) == demand_.isEmpty()) {
        registerDemand();
    }
    const LiveMeterData& live = engine_.meterChannel(channelID_).live;
    view_.sampleRate = engine_.meterChannel(channelID_).sampleRate;
    view_.bandLevelsDB = live.bandLevelsDB;
    view_.bandPeakHoldDB = live.bandPeakHoldDB;
    view_.lineSpectrumDB = live.lineSpectrumDB;
    view_.linePeakHoldDB = live.linePeakHoldDB;
    view_.activeRingAlert = live.currentRingAlert;
    for (SpectrumOverlay& overlay : view_.overlays) {
        const MeterChannel& channel = engine_.meterChannel(overlay.id);
        overlay.sampleRate = channel.sampleRate;
        overlay.lineSpectrumDB = channel.live.lineSpectrumDB;
        overlay.bandLevelsDB = channel.live.bandLevelsDB;
    }
    banner_.alert = live.currentRingAlert ? live.currentRingAlert : live.heldRingAlert;
    banner_.isLive = live.currentRingAlert.has_value();
    bannerFade_.follow(banner_);
    isStale_ = true;
    if (isSeen(*this)) {
        draw();
        updateRenewed();
    }
}

bool LiveSpectrumView::isDrawn() const {
    const double ratio = devicePixelRatioF();
    return !isStale_ && view_.covered == bannerFade_.shown().rect(size()) &&
           raster_.image().devicePixelRatio() == ratio &&
           raster_.image().size() == QSize(qRound(width() * ratio), qRound(height() * ratio));
}

void LiveSpectrumView::draw() {
    view_.covered = bannerFade_.shown().rect(size());
    raster_.image(view_, size(), devicePixelRatioF());
    isStale_ = false;
}

// Drawn ahead of its paint event, the graph has only those of its pixels painted and sent to the
// window system that changed. What lies over it may follow the levels too.
void LiveSpectrumView::updateRenewed() {
    if (view_.hover.frequencyHz || banner_.alert) {
        update();
        return;
    }
    const double ratio = devicePixelRatioF();
    const QRect& renewed = raster_.renewed();
    update(QRectF(renewed.x() / ratio, renewed.y() / ratio, renewed.width() / ratio,
                  renewed.height() / ratio)
               .toAlignedRect());
}

void LiveSpectrumView::paintEvent(QPaintEvent* event) {
    if (!isDrawn()) {
        draw();
        if (event->rect() != rect()) {
            update();
        }
    }
    QPainter painter(this);
    painter.drawImage(QPointF(0.0, 0.0), raster_.image());
    paintHover(painter, view_, size());
    bannerFade_.shown().paint(painter, size());
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::graph);
    }
}

void LiveSpectrumView::mouseMoveEvent(QMouseEvent* event) {
    hoverAt(event->position().x());
}

void LiveSpectrumView::leaveEvent(QEvent*) {
    leaveHover();
}

void LiveSpectrumView::hoverAt(double x) {
    view_.hover = SpectrumHoverState::at(x, width(), view_.frequencyAxis());
    update();
}

void LiveSpectrumView::leaveHover() {
    view_.hover = {};
    update();
}

// The readout by keys; without a pointer it begins in the middle.
void LiveSpectrumView::keyPressEvent(QKeyEvent* event) {
    const double step = (event->modifiers() & Qt::ShiftModifier) != 0 ? fineStep : coarseStep;
    const double x = view_.hover.xPosition.value_or(width() / 2.0);
    switch (event->key()) {
        case Qt::Key_Left:
            hoverAt(std::max(x - step, 0.0));
            break;
        case Qt::Key_Right:
            hoverAt(std::min(x + step, static_cast<double>(width())));
            break;
        case Qt::Key_Escape:
            leaveHover();
            break;
        default:
            QWidget::keyPressEvent(event);
    }
}

void LiveSpectrumView::focusOutEvent(QFocusEvent* event) {
    leaveHover();
    QWidget::focusOutEvent(event);
}

std::vector<SpokenPart> LiveSpectrumView::spokenParts() const {
    QString loudest;
    if (!view_.bandLevelsDB.empty() && view_.bandLevelsDB.size() == view_.bands.size()) {
        const auto band = std::ranges::max_element(view_.bandLevelsDB) - view_.bandLevelsDB.begin();
        loudest =
            QString::fromStdString(view_.bands[static_cast<std::size_t>(band)].label) +
            QStringLiteral(": ") +
            QString::number(
                view_.bandLevelsDB[static_cast<std::size_t>(band)] - view_.levelOffsetDB, 'f', 1) +
            (view_.scale == RTAScale::dbfs ? QStringLiteral(" dBFS") : QStringLiteral(" dB"));
    }
    const QString hover =
        view_.hover.frequencyHz ? view_.hoverLabel(*view_.hover.frequencyHz) : QString();
    return {
        {QStringLiteral("Real-Time Analyzer"), loudest, rect()},
        {QStringLiteral("Under the pointer"), hover, hoverPlate(view_, size()).toAlignedRect()},
        {QStringLiteral("Ring-out"), banner_.spokenText(), banner_.rect(size()).toAlignedRect()},
    };
}

}  // namespace TarvaneApp
