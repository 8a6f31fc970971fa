#include "Shell/Controls/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int fewestLetters = 3;

}  // namespace

ElidedLabel::ElidedLabel(double size, const QColor& color, QWidget* parent) : QLabel(parent) {
    styleTextLabel(*this, size, color);
}

QSize ElidedLabel::minimumSizeHint() const {
    const QString shortest =
        text().size() > fewestLetters ? text().left(fewestLetters) + QStringLiteral("…") : text();
    return {fontMetrics().horizontalAdvance(shortest), QLabel::minimumSizeHint().height()};
}

QString ElidedLabel::shownText() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, width());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && shownText() != text()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, shownText());
}

}  // namespace TarvaneApp
