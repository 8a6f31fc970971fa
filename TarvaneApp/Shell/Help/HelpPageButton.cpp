#include "Shell/Help/HelpPageButton.h"

#include <QFontMetrics>
#include <QPainter>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Help/HelpLook.h"

namespace TarvaneApp {

namespace {

constexpr int buttonHeight = 48;
constexpr int smallestWidth = 120;
constexpr int padding = 12;

// An advance is a whole number, the text that is drawn may be a little wider.
constexpr int rounding = 2;

constexpr int chevronRoom = padding + Theme::Symbol::chevron + padding;

QFont titleFont() {
    return Typeface::installed().systemFont(HelpLook::pageButtonSize, QFont::DemiBold);
}

}  // namespace

HelpPageButton::HelpPageButton(Direction direction, const QString& title, QWidget* parent)
    : QAbstractButton(parent), direction_(direction), title_(title) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(caption() + QStringLiteral(": ") + title);
    setToolTip(title);
}

QString HelpPageButton::caption() const {
    return direction_ == Direction::next ? QStringLiteral("Next") : QStringLiteral("Previous");
}

QSize HelpPageButton::sizeHint() const {
    return {QFontMetrics(titleFont()).horizontalAdvance(title_) + rounding + chevronRoom + padding,
            buttonHeight};
}

QSize HelpPageButton::minimumSizeHint() const {
    return {smallestWidth, buttonHeight};
}

void HelpPageButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool isNext = direction_ == Direction::next;
    paintPlate(painter, rect(), Theme::Radius::control,
               isDown()       ? Theme::controlBackground
               : underMouse() ? Theme::gridLineStrong
                              : Theme::gridLine);
    const double side = Theme::Symbol::chevron;
    Icon::paint(
        painter, isNext ? QStringLiteral("chevron.right") : QStringLiteral("chevron.left"),
        QRectF(isNext ? width() - padding - side : padding, (height() - side) / 2.0, side, side),
        HelpLook::bodyText);
    const QRect room = rect().adjusted(isNext ? padding : chevronRoom, Theme::Space::row,
                                       isNext ? -chevronRoom : -padding, -Theme::Space::row);
    const int edge = isNext ? Qt::AlignRight : Qt::AlignLeft;
    painter.setFont(Typeface::installed().systemFont(Theme::Text::caption));
    painter.setPen(HelpLook::bodyText);
    painter.drawText(room, edge | Qt::AlignTop, caption());
    painter.setFont(titleFont());
    painter.setPen(Theme::primaryText);
    painter.drawText(room, edge | Qt::AlignBottom,
                     painter.fontMetrics().elidedText(title_, Qt::ElideRight, room.width()));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::control);
    }
}

}  // namespace TarvaneApp
