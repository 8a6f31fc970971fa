// The look of every window: one dark palette for the toolkit's own controls, made of the
// display theme's colours.
#pragma once

namespace TarvaneApp {

/// Puts style and palette in force for the whole program. Once, before the first window.
void applyAppearance();

}  // namespace TarvaneApp
