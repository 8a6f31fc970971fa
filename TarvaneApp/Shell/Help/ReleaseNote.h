// What each version of the program brought.
#pragma once

#include <string>
#include <vector>

namespace TarvaneApp {

struct ReleaseNote {
    std::string version;
    std::string date;  ///< as it is shown: not every version has one
    std::vector<std::string> highlights;
};

/// Newest first; the first is this version.
const std::vector<ReleaseNote>& releaseNotes();

}  // namespace TarvaneApp
