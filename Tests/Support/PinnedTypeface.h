// One face for all machines, so that pictures are comparable.
#pragma once

#include "Displays/Theme.h"

namespace TarvaneTests {

inline const TarvaneApp::Typeface& pinnedTypeface() {
    static const TarvaneApp::Typeface pinned{QStringLiteral("DejaVu Sans"),
                                             QStringLiteral("DejaVu Sans"),
                                             QStringLiteral("DejaVu Sans Mono")};
    return pinned;
}

}  // namespace TarvaneTests
