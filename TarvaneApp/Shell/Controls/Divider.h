// The dividing lines of a window.
#pragma once

class QWidget;

namespace TarvaneApp {

/// Across the window, between two of its parts.
QWidget* makeDivider(QWidget* parent);

/// A short vertical one, between two groups of controls in a row.
QWidget* makeGroupDivider(QWidget* parent);

}  // namespace TarvaneApp
