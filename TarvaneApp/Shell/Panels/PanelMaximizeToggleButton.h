// Expands one of the two graphs over the area of both, and brings the split back.
#pragma once

#include "Records/LayoutEnums.h"
#include "Shell/Controls/IconButton.h"

namespace TarvaneApp {

class ModuleArrangementLink;

class PanelMaximizeToggleButton final : public IconButton {
    Q_OBJECT
  public:
    /// `panel` is the layout in which this button's graph has the area to itself. Hidden while the
    /// window shows only one graph. The arrangement outlives the button.
    PanelMaximizeToggleButton(ModuleArrangementLink& arrangement, PanelLayout panel,
                              QWidget* parent = nullptr);

  private:
    void showState();

    ModuleArrangementLink& arrangement_;
    const PanelLayout panel_;
};

}  // namespace TarvaneApp
