// What our own buttons and menus are to a screen reader. The toolkit knows neither that one of a
// row of buttons is chosen, nor which items of a menu exclude each other, nor that an open menu or
// popover belongs to the button that it stands under.
#pragma once

namespace TarvaneApp {

/// Call it before the first window is shown; further calls do nothing.
void installControlAccessibility();

}  // namespace TarvaneApp
