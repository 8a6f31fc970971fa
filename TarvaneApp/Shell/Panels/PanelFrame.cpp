#include "Shell/Panels/PanelFrame.h"

#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Panels/PanelHeader.h"

namespace TarvaneApp {

QVBoxLayout* framePanel(QWidget* panel, PanelHeader* header, QWidget* graph, int bottomMargin) {
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, bottomMargin);
    column->setSpacing(0);
    column->addWidget(header);
    auto* frame = new QVBoxLayout;
    frame->setContentsMargins(Theme::Space::panel, 0, Theme::Space::panel, 0);
    frame->setSpacing(0);
    frame->addWidget(graph, 1);
    column->addLayout(frame, 1);
    return frame;
}

}  // namespace TarvaneApp
