// The line between two parts of a window.
#pragma once

class QWidget;

namespace TarvaneApp {

QWidget* makeDivider(QWidget* parent);

}  // namespace TarvaneApp
