#include "Shell/Controls/ChannelColorDot.h"

#include <QPainter>

namespace TarvaneApp {

namespace {

constexpr int diameter = 8;

}  // namespace

ChannelColorDot::ChannelColorDot(QWidget* parent) : QWidget(parent) {
    setFixedSize(diameter, diameter);
}

void ChannelColorDot::setColor(const QColor& color) {
    color_ = color;
    update();
}

void ChannelColorDot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color_);
    painter.drawEllipse(rect());
}

}  // namespace TarvaneApp
