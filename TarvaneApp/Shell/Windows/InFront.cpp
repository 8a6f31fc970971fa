#include "Shell/Windows/InFront.h"

#include <QWidget>

namespace TarvaneApp {

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace TarvaneApp
