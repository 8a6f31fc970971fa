#include "Shell/Style/MenuLook.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <algorithm>

#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"

namespace TarvaneApp::MenuLook {

namespace {

constexpr int itemHeight = 24;
constexpr int headingHeight = 28;
constexpr int lineHeight = 9;
constexpr int padding = 8;
constexpr int checkRoom = Theme::Symbol::header + Theme::Space::related;
constexpr int shortcutGap = 28;

using Item = QStyleOptionMenuItem;

void paintRounded(QPainter& painter, const QRect& rect, const QColor& ground) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Theme::gridLineStrong);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), Theme::Radius::control,
                            Theme::Radius::control);
    painter.restore();
}

bool isPicked(const Item& item) {
    constexpr QStyle::State picked = QStyle::State_Selected | QStyle::State_Enabled;
    return (item.state & picked) == picked;
}

QColor textColor(const Item& item) {
    return (item.state & QStyle::State_Enabled) != 0 ? Theme::primaryText : Theme::dimmed;
}

int iconRoom(const Item& item) {
    // A picker's list tells of room for icons that it hasn't.
    return item.icon.isNull() ? 0 : std::max(item.maxIconWidth, 0) + Theme::Space::related;
}

int beforeText(const Item& item) {
    return padding + (item.menuHasCheckableItems ? checkRoom : 0) + iconRoom(item);
}

// With a text it is the heading of the items below, without one a line.
void paintSeparator(QPainter& painter, const Item& item) {
    const QRect room = item.rect.adjusted(padding, 0, -padding, 0);
    if (item.text.isEmpty()) {
        painter.fillRect(QRect(room.left(), room.center().y(), room.width(), 1),
                         Theme::gridLineStrong);
        return;
    }
    painter.save();
    painter.setFont(Theme::sectionLabelFont());
    painter.setPen(Theme::axisText);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, item.text);
    painter.restore();
}

void paintSymbol(QPainter& painter, const char* name, int size, const QPoint& middle,
                 const QColor& color) {
    const QRectF rect(middle.x() - size / 2.0, middle.y() - size / 2.0 + 0.5, size, size);
    Icon::paint(painter, QString::fromLatin1(name), rect, color);
}

}  // namespace

void paintPanel(QPainter& painter, const QRect& rect) {
    paintRounded(painter, rect, Theme::controlBackground);
}

void paintTip(QPainter& painter, const QRect& rect) {
    paintRounded(painter, rect, Theme::gridLine);
}

QSize itemSize(const Item& item, const QSize& text) {
    if (item.menuItemType == Item::Separator) {
        const int heading = QFontMetrics(Theme::sectionLabelFont()).horizontalAdvance(item.text);
        return item.text.isEmpty() ? QSize(2 * padding, lineHeight)
                                   : QSize(heading + 2 * padding, headingHeight);
    }
    const int arrow = item.menuItemType == Item::SubMenu ? shortcutGap : 0;
    const int gap = item.text.contains(u'\t') ? shortcutGap : 0;
    return {beforeText(item) + text.width() + std::max(arrow, gap) + 2 * padding,
            std::max(text.height() + Theme::Space::label, itemHeight)};
}

void paintItem(QPainter& painter, const Item& item, bool underlines) {
    if (item.menuItemType == Item::Separator) {
        paintSeparator(painter, item);
        return;
    }
    painter.save();
    if (isPicked(item)) {
        paintPlate(painter, item.rect, Theme::Radius::plate, Theme::gridLineStrong);
    }
    const QColor color = textColor(item);
    const int middle = item.rect.center().y();
    if (item.checked && item.checkType != Item::NotCheckable) {
        paintSymbol(painter, "checkmark", Theme::Symbol::header,
                    QPoint(item.rect.left() + padding + Theme::Symbol::header / 2, middle), color);
    }
    const QRect room = item.rect.adjusted(beforeText(item), 0, -padding, 0);
    if (!item.icon.isNull()) {
        const int size = item.maxIconWidth;
        item.icon.paint(
            &painter, QRect(room.left() - iconRoom(item), room.top(), size, room.height()),
            Qt::AlignCenter,
            (item.state & QStyle::State_Enabled) != 0 ? QIcon::Normal : QIcon::Disabled);
    }
    const qsizetype tab = item.text.indexOf(u'\t');
    QFont font = item.font;
    font.setBold(font.bold() || item.menuItemType == Item::DefaultItem);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(room,
                     int{Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine} |
                         (underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                     item.text.left(tab < 0 ? item.text.size() : tab));
    if (tab >= 0) {
        painter.setPen(isPicked(item) || color == Theme::dimmed ? color : Theme::axisText);
        // In a column of their own, as wide as the widest.
        painter.drawText(room.adjusted(room.width() - item.reservedShortcutWidth, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         item.text.mid(tab + 1));
    }
    if (item.menuItemType == Item::SubMenu) {
        paintSymbol(painter, "chevron.right", Theme::Symbol::chevron,
                    QPoint(item.rect.right() - padding - Theme::Symbol::chevron / 2, middle),
                    isPicked(item) ? color : Theme::axisText);
    }
    painter.restore();
}

void paintBarItem(QPainter& painter, const Item& item, bool underlines) {
    painter.save();
    if (isPicked(item)) {
        paintPlate(painter, item.rect.adjusted(0, 1, 0, -1), Theme::Radius::plate,
                   Theme::gridLineStrong);
    }
    painter.setFont(item.font);
    painter.setPen(textColor(item));
    painter.drawText(item.rect,
                     int{Qt::AlignCenter | Qt::TextSingleLine} |
                         (underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                     item.text);
    painter.restore();
}

}  // namespace TarvaneApp::MenuLook
