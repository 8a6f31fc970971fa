// Brings a window to the front, whether it is closed, minimised or behind others.
#pragma once

class QWidget;

namespace TarvaneApp {

void bringToFront(QWidget& window);

}  // namespace TarvaneApp
