// Whether anybody can see a display. A window that the window system shows nothing of has its
// updates off (UnseenWindows in the shell), and with them all that stands in it.
#pragma once

#include <QWidget>

namespace TarvaneApp {

inline bool isSeen(const QWidget& display) {
    return display.isVisible() && display.updatesEnabled();
}

}  // namespace TarvaneApp
