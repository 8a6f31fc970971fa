// Menus, the menu bar, lists that open under a picker, and tooltips: rounded, with a hairline
// around them and room inside. By the toolkit's own options, in logical pixels.
#pragma once

#include <QSize>

class QPainter;
class QRect;
class QStyleOptionMenuItem;

namespace TarvaneApp::MenuLook {

/// Between the edge of a menu and its items, hairline included.
inline constexpr int margin = 5;
/// Between the edge of a tooltip and its text.
inline constexpr int tipMargin = 6;

/// What a menu or a picker's list lies on.
void paintPanel(QPainter& painter, const QRect& rect);
void paintTip(QPainter& painter, const QRect& rect);

/// `text` is the size of the item's text without its shortcut.
QSize itemSize(const QStyleOptionMenuItem& item, const QSize& text);
/// `underlines` the letter that picks it.
void paintItem(QPainter& painter, const QStyleOptionMenuItem& item, bool underlines);

void paintBarItem(QPainter& painter, const QStyleOptionMenuItem& item, bool underlines);

}  // namespace TarvaneApp::MenuLook
