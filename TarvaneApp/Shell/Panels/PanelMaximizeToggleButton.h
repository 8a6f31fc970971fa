// Expands one of the two graphs over the area of both, and brings the split back.
#pragma once

#include "Controls/IconButton.h"
#include "LayoutEnums.h"

namespace TarvaneApp {

class MeterEngine;

class PanelMaximizeToggleButton final : public IconButton {
    Q_OBJECT
  public:
    /// `panel` is the layout in which this button's graph has the area to itself. Not there while
    /// the main window shows one graph alone.
    PanelMaximizeToggleButton(MeterEngine& engine, PanelLayout panel, QWidget* parent = nullptr);

  private:
    void showState();

    MeterEngine& engine_;
    const PanelLayout panel_;
};

}  // namespace TarvaneApp
