// An icon button that opens a menu under itself.
#pragma once

#include <functional>

#include "Shell/Controls/IconButton.h"

class QMenu;

namespace TarvaneApp {

class IconMenuButton : public IconButton {
    Q_OBJECT
  public:
    /// `fill` gets the empty menu each time it opens.
    IconMenuButton(int iconSize, std::function<void(QMenu&)> fill, QWidget* parent = nullptr);

    QMenu& menu() { return *menu_; }

  private:
    QMenu* menu_;
};

}  // namespace TarvaneApp
