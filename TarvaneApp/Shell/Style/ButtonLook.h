// Buttons, fields, boxes to tick, tabs, and the frame around a part of a form: flat plates with
// rounded corners, and a ring around what has the focus. By the toolkit's own options.
#pragma once

#include <QPalette>

class QPainter;
class QStyleOption;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionGroupBox;

namespace TarvaneApp::ButtonLook {

/// The plate of a button; that of a window's proposal stands out.
void paintPlateOf(QPainter& painter, const QStyleOption& option);
/// With the colour that a text on this plate has.
QPalette textPalette(const QStyleOptionButton& option);
/// A button in a row of tools: its plate shows under the pointer.
void paintToolPlate(QPainter& painter, const QStyleOption& option);
/// A picker's plate, with the symbol that says that it opens.
void paintPicker(QPainter& painter, const QStyleOptionComboBox& option);

void paintCheckBox(QPainter& painter, const QStyleOption& option);
void paintRadioButton(QPainter& painter, const QStyleOption& option);

/// Where a text or number is typed.
void paintField(QPainter& painter, const QStyleOption& option);
enum class StepTo { higher, lower };
/// One of the two arrows of a number.
void paintStep(QPainter& painter, const QRect& room, StepTo direction, bool canStep,
               bool isHovered);

void paintTab(QPainter& painter, const QStyleOption& option);
/// The frame of a part of a form, under its title.
QRect groupFrame(const QStyleOptionGroupBox& option);
void paintGroup(QPainter& painter, const QStyleOptionGroupBox& option);

void ringIfFocused(QPainter& painter, const QStyleOption& option);

}  // namespace TarvaneApp::ButtonLook
