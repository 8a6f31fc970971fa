// Layouts without margins, for a widget inside another layout that has them.
#pragma once

class QHBoxLayout;
class QVBoxLayout;
class QWidget;

namespace TarvaneApp {

/// Beside each other, from left to right.
QHBoxLayout* layOutRow(QWidget* holder, int spacing);

/// Under each other.
QVBoxLayout* layOutColumn(QWidget* holder, int spacing);

}  // namespace TarvaneApp
