#include "LiveDisplays/LiveLevelHistoryGraph.h"

#include <QInputDevice>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <cmath>

#include "ChannelViews/ChannelLevelHistory.h"
#include "Displays/FocusRing.h"
#include "Displays/LevelHistory/LevelHistoryHover.h"
#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/OverlayAxis.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

using TarvaneKit::SPLHistoryRecorder;
using TarvaneKit::UUID;

namespace {

// A shorter movement is an unsteady click.
constexpr double shortestDrag = 3.0;

// One notch of a wheel, in eighths of a degree.
constexpr double wheelNotch = 120.0;

}  // namespace

LiveLevelHistoryGraph::LiveLevelHistoryGraph(MeterEngine& engine, const UUID& channelID,
                                             QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      requestedChannelID_(channelID),
      channelID_(engine.resolvedChannelID(channelID)),
      binding_(*this, [this] { refresh(); }),
      raster_(Theme::background) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    setToolTip(QStringLiteral("Scroll or pinch to zoom, drag to pan, double-click to reset"));
    followChannels(
        engine.channelChanges(), this,
        [this](const UUID& id) {
            return id == requestedChannelID_ || id == channelID_ ||
                   std::ranges::find(requestedOverlayIDs_, id) != requestedOverlayIDs_.end();
        },
        [this] { contextChanged(); });
    refresh();
}

void LiveLevelHistoryGraph::setChannelID(const UUID& channelID) {
    requestedChannelID_ = channelID;
    contextChanged();
}

void LiveLevelHistoryGraph::setOverlayIDs(std::vector<UUID> ids) {
    requestedOverlayIDs_ = std::move(ids);
    contextChanged();
}

void LiveLevelHistoryGraph::clearOwnRange() {
    view_.viewport.custom.reset();
    rangeMoved(true);
}

void LiveLevelHistoryGraph::showMoment(double elapsedSeconds) {
    view_.viewport.showMoment(elapsedSeconds, view_.session());
    rangeMoved(true);
}

void LiveLevelHistoryGraph::contextChanged() {
    channelID_ = engine_.resolvedChannelID(requestedChannelID_);
    LevelHistoryView view = channelLevelHistory(engine_, engine_.meterChannel(channelID_));
    view.windowSeconds = windowSeconds(engine_.levelHistoryZoom());
    view.viewport = view_.viewport;
    view.hover = view_.hover;
    std::vector<UUID> shown{channelID_};
    for (const UUID& id : requestedOverlayIDs_) {
        const auto overlaid = engine_.channelInfo(id);
        if (id == channelID_ || !overlaid || whyNotOverHistory(engine_, channelID_, id)) {
            continue;
        }
        shown.push_back(id);
        const SPLHistoryRecorder& history = engine_.meterChannel(id).levelHistory();
        view.overlays.push_back(
            {.id = id,
             .recorder = &history,
             .revision = 0,
             .metricIndex = history.index(engine_.historyMetric(id)).value_or(-1),
             .color = overlaid->color,
             .displayOffsetDB = engine_.splReadoutDisplayOffsetDB(id)});
    }
    view_ = std::move(view);
    binding_.bind(engine_, shown);
    binding_.schedule();
}

void LiveLevelHistoryGraph::refresh() {
    const LiveMeterData& live = engine_.meterChannel(channelID_).live;
    view_.revision = live.levelHistoryRevision;
    view_.lostAudioTotal = LostAudioTotal::of(live.lostAudio);
    for (LevelHistoryOverlay& overlay : view_.overlays) {
        overlay.revision = engine_.meterChannel(overlay.id).live.levelHistoryRevision;
    }
    // Most publications bring nothing new: the recorder takes ten points a second.
    if (!(view_ == shown_)) {
        shown_ = view_;
        update();
        Q_EMIT historyChanged();
    }
}

void LiveLevelHistoryGraph::paintEvent(QPaintEvent*) {
    LevelHistoryView still = view_;
    still.hover = {};
    QPainter painter(this);
    painter.drawImage(QPointF(0.0, 0.0), raster_.image(still, size(), devicePixelRatioF()));
    drawHover(painter, view_, raster_.geometry(), size());
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::graph);
    }
}

double LiveLevelHistoryGraph::plotFraction(double x) const {
    const QRectF plot = view_.plot(size());
    return std::clamp((x - plot.left()) / plot.width(), 0.0, 1.0);
}

// Zooming out to the whole session also picks that preset.
void LiveLevelHistoryGraph::rangeMoved(bool staysZoomedIn) {
    if (!staysZoomedIn) {
        engine_.levelHistoryZoom.set(LevelHistoryZoom::session);
    }
    update();
    Q_EMIT ownRangeChanged();
}

void LiveLevelHistoryGraph::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && !view_.recorder->isEmpty()) {
        pressedAt_ = event->position();
    }
}

void LiveLevelHistoryGraph::mouseMoveEvent(QMouseEvent* event) {
    view_.hover.xPosition = event->position().x();
    if (pressedAt_) {
        const QPointF moved = event->position() - *pressedAt_;
        if (view_.viewport.dragStartRange || std::hypot(moved.x(), moved.y()) >= shortestDrag) {
            view_.viewport.pan(moved.x(), view_.plot(size()).width(), view_.session());
            Q_EMIT ownRangeChanged();
        }
    }
    update();
}

void LiveLevelHistoryGraph::mouseReleaseEvent(QMouseEvent*) {
    pressedAt_.reset();
    view_.viewport.endPan();
}

// The second press may begin a drag, too.
void LiveLevelHistoryGraph::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        clearOwnRange();
        mousePressEvent(event);
    }
}

void LiveLevelHistoryGraph::leaveEvent(QEvent*) {
    view_.hover = {};
    update();
}

void LiveLevelHistoryGraph::wheelEvent(QWheelEvent* event) {
    event->accept();
    // A touchpad reports pixels; a wheel reports notches, and under X11 also meaningless pixels.
    const bool isTouchpad = event->phase() != Qt::NoScrollPhase ||
                            event->device()->type() == QInputDevice::DeviceType::TouchPad;
    const bool isPrecise = isTouchpad && !event->pixelDelta().isNull();
    const QPointF delta =
        isPrecise ? QPointF(event->pixelDelta()) : QPointF(event->angleDelta()) / wheelNotch;
    scroll({.deltaX = delta.x(), .deltaY = delta.y(), .isPrecise = isPrecise},
           event->position().x());
}

void LiveLevelHistoryGraph::scroll(const LevelHistoryViewport::Scroll& scroll, double atX) {
    if (!view_.recorder->isEmpty()) {
        rangeMoved(view_.viewport.scroll(scroll, plotFraction(atX), view_.plot(size()).width(),
                                         view_.session()));
    }
}

// Like wheel and touchpad, at the pointer or in the middle.
void LiveLevelHistoryGraph::keyPressEvent(QKeyEvent* event) {
    const QRectF plot = view_.plot(size());
    const double x = view_.hover.xPosition.value_or(plot.center().x());
    const double pan = plot.width() / 10.0;
    switch (event->key()) {
        case Qt::Key_Left:
            scroll({.deltaX = pan, .deltaY = 0.0, .isPrecise = true}, x);
            break;
        case Qt::Key_Right:
            scroll({.deltaX = -pan, .deltaY = 0.0, .isPrecise = true}, x);
            break;
        case Qt::Key_Up:
        case Qt::Key_Plus:
            scroll({.deltaX = 0.0, .deltaY = 1.0, .isPrecise = false}, x);
            break;
        case Qt::Key_Down:
        case Qt::Key_Minus:
            scroll({.deltaX = 0.0, .deltaY = -1.0, .isPrecise = false}, x);
            break;
        case Qt::Key_Escape:
            clearOwnRange();
            break;
        default:
            QWidget::keyPressEvent(event);
    }
}

bool LiveLevelHistoryGraph::event(QEvent* event) {
    // What the graph itself says under the pointer isn't covered.
    if (event->type() == QEvent::ToolTip && !hoverText(view_, raster_.geometry()).isEmpty()) {
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture && !view_.recorder->isEmpty()) {
            rangeMoved(view_.viewport.magnify(
                gesture->value(), plotFraction(gesture->position().x()), view_.session()));
            return true;
        }
    }
    return QWidget::event(event);
}

std::vector<SpokenPart> LiveLevelHistoryGraph::spokenParts() const {
    const auto extremes = view_.recorder->extremes(view_.metricIndex);
    const auto spoken = [&](const auto& extreme) {
        return extreme ? view_.extremeLabel(*extreme) : QString();
    };
    return {
        {QStringLiteral("Level History"), LevelHistoryView::timeLabel(view_.session().duration),
         rect()},
        {QStringLiteral("History maximum"), spoken(extremes.max), QRect()},
        {QStringLiteral("History minimum"), spoken(extremes.min), QRect()},
        {QStringLiteral("Under the pointer"), hoverText(view_, raster_.geometry()),
         hoverPlate(view_, raster_.geometry(), size()).toAlignedRect()},
    };
}

}  // namespace TarvaneApp
