// The look of every window: one dark palette for the toolkit's own controls, made of the
// display theme's colours.
#pragma once

namespace TarvaneApp {

/// Sets style and palette of the whole program. Call it once, before the first window.
void applyAppearance();

}  // namespace TarvaneApp
