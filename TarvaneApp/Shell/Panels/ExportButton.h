// The button of a panel that exports the session. What it does is the window's: its action of that
// name.
#pragma once

#include "Shell/Controls/IconButton.h"

namespace TarvaneApp {

/// The object name of a window's action that exports.
inline constexpr const char* exportActionName = "exportLevelHistory";

class ExportButton final : public IconButton {
    Q_OBJECT
  public:
    explicit ExportButton(QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
