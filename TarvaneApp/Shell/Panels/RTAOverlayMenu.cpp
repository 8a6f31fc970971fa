#include "Shell/Panels/RTAOverlayMenu.h"

#include <QMenu>

#include "Engine/MeterEngine.h"
#include "LiveDisplays/OverlayAxis.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

RTAOverlayMenu::RTAOverlayMenu(MeterEngine& engine, const UUID& baseChannelID, QWidget* parent)
    : ChannelOverlayMenu(engine, engine.rtaOverlayChannelIDs,
                         QStringLiteral("Overlay other channels on this RTA"), baseChannelID,
                         parent) {}

void RTAOverlayMenu::fill(QMenu& menu) {
    ChannelOverlayMenu::fill(menu);
    menu.addSeparator();
    QAction* clear = menu.addAction(QStringLiteral("Clear Overlays"));
    clear->setEnabled(!overlays_().empty());
    connect(clear, &QAction::triggered, this, [this] { overlays_.set({}); });
}

std::optional<QString> RTAOverlayMenu::whyNot(const UUID& base, const UUID& overlay) const {
    return whyNotOverSpectrum(engine_, base, overlay);
}

}  // namespace TarvaneApp
