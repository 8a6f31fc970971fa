// A row of controls in groups with a short line between them.
#pragma once

class QHBoxLayout;
class QWidget;

namespace TarvaneApp::ControlRow {

/// Between two groups, and where there is little width.
inline constexpr int groupSpacing = 20;
inline constexpr int narrowSpacing = 8;

/// Lays the holder's controls out in a row without margins.
QHBoxLayout* make(QWidget* holder, int spacing);

QWidget* makeDivider(QWidget* parent);

}  // namespace TarvaneApp::ControlRow
