#include "Shell/Panels/PanelResizeHandle.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/SpokenRole.h"

namespace TarvaneApp {

namespace {

constexpr double gripLength = 36.0;
constexpr double gripThickness = 4.0;
constexpr double gripRadius = 2.0;
constexpr double keyStep = 16.0;

}  // namespace

PanelResizeHandle::PanelResizeHandle(Actions actions, QWidget* parent)
    : QWidget(parent), actions_(std::move(actions)) {
    setFocusPolicy(Qt::TabFocus);
    setSpokenRole(*this, QAccessible::Separator);
    setOrientation(Qt::Horizontal);
}

void PanelResizeHandle::setOrientation(Qt::Orientation orientation) {
    orientation_ = orientation;
    setCursor(orientation == Qt::Horizontal ? Qt::SplitVCursor : Qt::SplitHCursor);
    update();
}

void PanelResizeHandle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isHorizontal = orientation_ == Qt::Horizontal;
    const QPointF center = QRectF(rect()).center();
    const QSizeF line = isHorizontal ? QSizeF(width(), 1.0) : QSizeF(1.0, height());
    const QSizeF grip =
        isHorizontal ? QSizeF(gripLength, gripThickness) : QSizeF(gripThickness, gripLength);
    const auto centered = [&](const QSizeF& size) {
        return PixelGrid(painter).snapped(
            QRectF(center - QPointF(size.width() / 2.0, size.height() / 2.0), size));
    };
    painter.fillRect(centered(line), Theme::gridLine);
    paintPlate(painter, centered(grip), gripRadius,
               hasFocus() ? Theme::accent : Theme::gridLineStrong);
}

void PanelResizeHandle::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        pressedAt_ = event->globalPosition();
        actions_.begin();
    }
}

void PanelResizeHandle::mouseMoveEvent(QMouseEvent* event) {
    if (pressedAt_) {
        actions_.moveBy(across(event->globalPosition()) - across(*pressedAt_));
    }
}

void PanelResizeHandle::mouseReleaseEvent(QMouseEvent*) {
    pressedAt_.reset();
}

void PanelResizeHandle::mouseDoubleClickEvent(QMouseEvent*) {
    pressedAt_.reset();
    actions_.reset();
}

void PanelResizeHandle::keyPressEvent(QKeyEvent* event) {
    const bool isHorizontal = orientation_ == Qt::Horizontal;
    const int back = isHorizontal ? Qt::Key_Up : Qt::Key_Left;
    const int forth = isHorizontal ? Qt::Key_Down : Qt::Key_Right;
    if (event->key() != back && event->key() != forth) {
        QWidget::keyPressEvent(event);
        return;
    }
    actions_.begin();
    actions_.moveBy(event->key() == forth ? keyStep : -keyStep);
}

}  // namespace TarvaneApp
