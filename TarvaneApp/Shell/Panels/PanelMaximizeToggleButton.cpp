#include "Shell/Panels/PanelMaximizeToggleButton.h"

#include "Displays/Theme.h"
#include "Shell/Panels/ModuleArrangementLink.h"

namespace TarvaneApp {

PanelMaximizeToggleButton::PanelMaximizeToggleButton(ModuleArrangementLink& arrangement,
                                                     PanelLayout panel, QWidget* parent)
    : IconButton(Theme::Symbol::header, parent), arrangement_(arrangement), panel_(panel) {
    connect(this, &QAbstractButton::clicked, this, [this] {
        const bool isSplit = arrangement_.arrangement().panelLayout == PanelLayout::both;
        arrangement_.setPanelLayout(isSplit ? panel_ : PanelLayout::both);
    });
    connect(&arrangement, &ModuleArrangementLink::changed, this, [this] { showState(); });
    showState();
}

void PanelMaximizeToggleButton::showState() {
    const ModuleArrangement shown = arrangement_.arrangement();
    const bool isSplit = shown.panelLayout == PanelLayout::both;
    setSymbol(isSplit ? QStringLiteral("arrow.up.left.and.arrow.down.right")
                      : QStringLiteral("arrow.down.right.and.arrow.up.left"),
              Theme::axisText);
    const QString help =
        isSplit ? QStringLiteral("Expand to fill this area") : QStringLiteral("Restore split view");
    const QString graph = panel_ == PanelLayout::rtaOnly ? QStringLiteral("Real-Time Analyzer")
                                                         : QStringLiteral("Spectrogram");
    setHelp(isSplit ? QStringLiteral("Expand ") + graph : help, help);
    setVisible(shown.showsBothGraphs());
}

}  // namespace TarvaneApp
