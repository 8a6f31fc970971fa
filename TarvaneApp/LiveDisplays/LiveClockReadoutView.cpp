#include "LiveDisplays/LiveClockReadoutView.h"

#include <QDateTime>
#include <QPaintEvent>
#include <QPainter>
#include <utility>

#include "Displays/Readouts/ReadoutPlate.h"

namespace TarvaneApp {

LiveClockReadoutView::LiveClockReadoutView(QWidget* parent) : QWidget(parent) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout(this, [this] { tick(); });
    view_ = ClockReadoutView::at(QDateTime::currentDateTime());
}

// Shows the time of now and waits for the next whole second, so that no error adds up.
void LiveClockReadoutView::tick() {
    const QDateTime now = QDateTime::currentDateTime();
    timer_.start(1000 - now.time().msec());
    const ClockReadoutView before = std::exchange(view_, ClockReadoutView::at(now));
    if (sameShape(before, view_)) {
        update(changedArea(before, view_, frame_).translated(plate_.topLeft().toPoint()));
    } else {
        updateFrame();
        update();
    }
}

void LiveClockReadoutView::updateFrame() {
    plate_ = ReadoutPlate::rectAtTop(size());
    frame_ = TarvaneApp::layout(view_, plate_.size());
}

void LiveClockReadoutView::showEvent(QShowEvent*) {
    tick();
}

void LiveClockReadoutView::hideEvent(QHideEvent*) {
    timer_.stop();
}

void LiveClockReadoutView::resizeEvent(QResizeEvent*) {
    updateFrame();
}

void LiveClockReadoutView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    ReadoutPlate::paint(painter, plate_, event->rect());
    const QPoint origin = plate_.topLeft().toPoint();
    painter.translate(origin);
    paint(painter, view_, frame_, event->region().translated(-origin));
}

std::vector<SpokenPart> LiveClockReadoutView::spokenParts() const {
    return {
        {QStringLiteral("Clock"), view_.timeText, rect()},
        {QStringLiteral("Date"), view_.dateText,
         frame_.label.translated(plate_.topLeft()).toAlignedRect()},
    };
}

}  // namespace TarvaneApp
