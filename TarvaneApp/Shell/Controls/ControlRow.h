// A row of controls in groups with a short line between them.
#pragma once

class QHBoxLayout;
class QWidget;

namespace TarvaneApp::ControlRow {

/// Lays the holder's controls out in a row without margins.
QHBoxLayout* make(QWidget* holder, int spacing);

QWidget* makeDivider(QWidget* parent);

}  // namespace TarvaneApp::ControlRow
