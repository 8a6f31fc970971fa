// How a panel stands together: its header on top, its graph under it with the panel's margin at the
// sides.
#pragma once

class QVBoxLayout;
class QWidget;

namespace TarvaneApp {

class PanelHeader;

/// `bottomMargin` stays free under the graph. Returns the column of the graph, for what stands
/// under it.
QVBoxLayout* framePanel(QWidget* panel, PanelHeader* header, QWidget* graph, int bottomMargin);

}  // namespace TarvaneApp
