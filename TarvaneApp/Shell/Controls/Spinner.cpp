#include "Shell/Controls/Spinner.h"

#include <QPainter>
#include <chrono>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr int stepsPerTurn = 24;
constexpr std::chrono::milliseconds stepTime{40};
constexpr double lineWidth = 2.5;

// QPainter counts arcs in sixteenths of a degree, anticlockwise.
constexpr int fullCircle = 360 * 16;

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&timer_, &QTimer::timeout, this, [this] {
        step_ = (step_ + 1) % stepsPerTurn;
        update();
    });
}

void Spinner::showEvent(QShowEvent*) {
    timer_.start(stepTime);
}

void Spinner::hideEvent(QHideEvent*) {
    timer_.stop();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = lineWidth / 2.0 + 1.0;
    const QRectF circle = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    painter.setPen(QPen(Theme::gridLineStrong, lineWidth));
    painter.drawEllipse(circle);
    painter.setPen(QPen(Theme::accent, lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, -step_ * fullCircle / stepsPerTurn, fullCircle / 4);
}

}  // namespace TarvaneApp
