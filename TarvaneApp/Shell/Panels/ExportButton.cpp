#include "Shell/Panels/ExportButton.h"

#include <QAction>

#include "Displays/Theme.h"

namespace TarvaneApp {

ExportButton::ExportButton(QWidget* parent) : IconButton(Theme::Symbol::options, parent) {
    setSymbol(QStringLiteral("square.and.arrow.up"), Theme::axisText);
    setHelp(QStringLiteral("Export Level History"),
            QStringLiteral("Export Level History… (Ctrl+Shift+E)"));
    connect(this, &QAbstractButton::clicked, this, [this] {
        for (QAction* action : window()->actions()) {
            if (action->objectName() == QLatin1String(exportActionName)) {
                action->trigger();
            }
        }
    });
}

}  // namespace TarvaneApp
