// Bringing a window to the user, whether it is closed, minimised or behind others.
#pragma once

class QWidget;

namespace TarvaneApp {

void bringToFront(QWidget& window);

}  // namespace TarvaneApp
