// What the program says on the terminal that it was launched from, ahead of any window: its help,
// its version, that it doesn't know an option, that there is no display.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TarvaneApp::CommandLine {

/// What is printed instead of starting.
struct Answer {
    std::string text;
    bool isRefusal = false;  ///< goes to standard error

    int exitCode() const { return isRefusal ? 2 : 0; }
};

/// Absent where the program is to start. The toolkit's options (-platform, -style …) are let
/// through. `arguments` are those behind the program's name.
std::optional<Answer> answer(const std::vector<std::string_view>& arguments);

/// While the toolkit looks for a display, which it does when the application object is made: one
/// line on standard error and exit code 1 where there is none, in place of the toolkit's abort.
/// Whatever else it says meanwhile is held back until the end.
class DisplaySearch {
  public:
    DisplaySearch();
    ~DisplaySearch();
    DisplaySearch(const DisplaySearch&) = delete;
    DisplaySearch& operator=(const DisplaySearch&) = delete;
};

}  // namespace TarvaneApp::CommandLine
