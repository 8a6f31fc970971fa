#include "Panels/PanelMaximizeToggleButton.h"

#include "LiveFollow.h"
#include "MeterEngine.h"
#include "Theme.h"

namespace TarvaneApp {

namespace {

constexpr int symbolSize = 12;

}  // namespace

PanelMaximizeToggleButton::PanelMaximizeToggleButton(MeterEngine& engine, PanelLayout panel,
                                                     QWidget* parent)
    : IconButton(symbolSize, parent), engine_(engine), panel_(panel) {
    connect(this, &QAbstractButton::clicked, this, [this] {
        engine_.panelLayout.set(engine_.panelLayout() == PanelLayout::both ? panel_
                                                                           : PanelLayout::both);
    });
    followAll(
        this, [this] { showState(); }, engine.panelLayout, engine.rtaPlacement,
        engine.spectrogramPlacement);
}

void PanelMaximizeToggleButton::showState() {
    const bool isSplit = engine_.panelLayout() == PanelLayout::both;
    const QString help =
        isSplit ? QStringLiteral("Expand to fill this area") : QStringLiteral("Restore split view");
    setSymbol(isSplit ? QStringLiteral("arrow.up.left.and.arrow.down.right")
                      : QStringLiteral("arrow.down.right.and.arrow.up.left"),
              Theme::axisText);
    setToolTip(help);
    setAccessibleName(help);
    setVisible(engine_.rtaPlacement() == ModulePlacement::mainWindow &&
               engine_.spectrogramPlacement() == ModulePlacement::mainWindow);
}

}  // namespace TarvaneApp
