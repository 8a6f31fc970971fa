// The layout of a panel: its header on top, its graph under it with the panel's margin at the
// sides.
#pragma once

class QVBoxLayout;
class QWidget;

namespace TarvaneApp {

class PanelHeader;

/// `bottomMargin` is left free under the graph. Returns the graph's column, for what goes under it.
QVBoxLayout* framePanel(QWidget* panel, PanelHeader* header, QWidget* graph, int bottomMargin);

}  // namespace TarvaneApp
