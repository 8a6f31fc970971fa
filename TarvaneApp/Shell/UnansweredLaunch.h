// What the user is asked when the program already runs but doesn't answer.
#pragma once

namespace TarvaneApp {

/// Waits for the user; false to give the launch up.
bool askWhetherToStartAnyway();

}  // namespace TarvaneApp
