#include "LiveDisplays/LiveSpectrogramView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <utility>

#include "DSP/SpectrogramRow.h"
#include "Displays/FocusRing.h"
#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/Sight.h"
#include "Metering/SpectrogramPace.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

// A shorter movement is an unsteady click.
constexpr double shortestScroll = 2.0;

}  // namespace

LiveSpectrogramView::LiveSpectrogramView(MeterEngine& engine, const UUID& channelID,
                                         QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      requestedChannelID_(channelID),
      channelID_(engine.resolvedChannelID(channelID)),
      binding_(*this, [this] { refresh(); }) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::TabFocus);
    view_.frequencies = TarvaneKit::spectrogramFrequencies();
    view_.rowsPerSecond = SpectrogramPace::rowsPerSecond;
    channelResolved();
    followChannels(
        engine.channelChanges(), this,
        [this](const UUID& id) { return id == requestedChannelID_ || id == channelID_; },
        [this] { contextChanged(); });
    refresh();
}

void LiveSpectrogramView::setChannelID(const UUID& channelID) {
    requestedChannelID_ = channelID;
    contextChanged();
}

void LiveSpectrogramView::contextChanged() {
    const UUID resolved = engine_.resolvedChannelID(requestedChannelID_);
    if (resolved != channelID_) {
        channelID_ = resolved;
        channelResolved();
    }
    const SpectrogramRange range = engine_.spectrogramColorMapRange(channelID_);
    view_.floorDB = range.floorDB;
    view_.ceilingDB = range.ceilingDB;
    view_.colorStops = engine_.spectrogramColorStops();
    view_.timeSpanSeconds = engine_.spectrogramTimeSpanSeconds();
    view_.sliceHeightMultiplier = engine_.spectrogramSliceHeightMultiplier();
    binding_.schedule();
}

void LiveSpectrogramView::channelResolved() {
    binding_.bind(engine_, {channelID_});
    registerDemand();
}

void LiveSpectrogramView::registerDemand() {
    if (isSeen(*this)) {
        demand_.update(engine_, {channelID_}, ChannelDemand::spectrogram);
    } else {
        demand_.clear();
    }
}

void LiveSpectrogramView::showEvent(QShowEvent*) {
    registerDemand();
}

// Also runs when the window is minimised.
void LiveSpectrogramView::hideEvent(QHideEvent*) {
    demand_.clear();
}

void LiveSpectrogramView::refresh() {
    if (isSeen(*this) == demand_.isEmpty()) {
        registerDemand();
    }
    const LiveMeterData& live = engine_.meterChannel(channelID_).live;
    view_.rowsAdded = live.spectrogramRowsAdded;
    if (live.spectrogramHistory.empty()) {
        view_.scrollState.resume();
    }
    update();
}

void LiveSpectrogramView::paintEvent(QPaintEvent*) {
    // Drawn from the engine's own rows, which nothing writes to while this paints.
    view_.history = SpectrogramRows(engine_.meterChannel(channelID_).live.spectrogramHistory);
    QPainter painter(this);
    painter.drawImage(QPointF(0.0, 0.0), raster_.image(view_, size(), devicePixelRatioF()));
    badge().paint(painter, size());
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::graph);
    }
    view_.history = {};
}

void LiveSpectrogramView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (badge().rect(size()).contains(event->position())) {
        isBadgePressed_ = true;
        return;
    }
    pressedAt_ = event->position();
}

void LiveSpectrogramView::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_) {
        return;
    }
    const QPointF translation = event->position() - *pressedAt_;
    if (view_.scrollState.isDragging ||
        std::hypot(translation.x(), translation.y()) >= shortestScroll) {
        scrollBack(translation.y());
    }
}

void LiveSpectrogramView::scrollBack(double pixels) {
    const auto& history = engine_.meterChannel(channelID_).live.spectrogramHistory;
    view_.scrollState.drag(pixels, height(), view_.rows(), static_cast<int>(history.size()));
    update();
}

// The badge is a button: a press that is dragged off it does nothing.
void LiveSpectrogramView::mouseReleaseEvent(QMouseEvent* event) {
    if (std::exchange(isBadgePressed_, false) && badge().rect(size()).contains(event->position())) {
        resumeLive();
    }
    pressedAt_.reset();
    view_.scrollState.endDrag();
}

void LiveSpectrogramView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        resumeLive();
    }
}

void LiveSpectrogramView::resumeLive() {
    pressedAt_.reset();
    view_.scrollState.resume();
    update();
}

// Each key is one drag: by a tenth of the picture, or all of it.
void LiveSpectrogramView::keyPressEvent(QKeyEvent* event) {
    const double page = height();
    switch (event->key()) {
        case Qt::Key_Up:
            scrollBack(page / 10.0);
            break;
        case Qt::Key_Down:
            scrollBack(-page / 10.0);
            break;
        case Qt::Key_PageUp:
            scrollBack(page);
            break;
        case Qt::Key_PageDown:
            scrollBack(-page);
            break;
        case Qt::Key_End:
        case Qt::Key_Escape:
            resumeLive();
            break;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    view_.scrollState.endDrag();
}

std::vector<SpokenPart> LiveSpectrogramView::spokenParts() const {
    const SpectrogramRange shown = engine_.spectrogramRange(channelID_);
    const QString range = QString::number(shown.floorDB, 'f', 0) + QStringLiteral(" to ") +
                          QString::number(shown.ceilingDB, 'f', 0) +
                          (engine_.rtaScale(channelID_) == RTAScale::dbfs ? QStringLiteral(" dBFS")
                                                                          : QStringLiteral(" dB"));
    return {
        {QStringLiteral("Spectrogram"), range, rect()},
        {QStringLiteral("Spectrogram position"), badge().text(),
         badge().rect(size()).toAlignedRect()},
    };
}

}  // namespace TarvaneApp
