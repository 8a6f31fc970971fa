// A row of controls.
#pragma once

class QHBoxLayout;
class QWidget;

namespace TarvaneApp::ControlRow {

/// Lays the holder's controls out in a row without margins.
QHBoxLayout* make(QWidget* holder, int spacing);

}  // namespace TarvaneApp::ControlRow
