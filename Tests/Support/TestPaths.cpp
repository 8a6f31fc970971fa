#include "Support/TestPaths.h"

namespace TarvaneTests::TestPaths {

const char* sourceFolder() {
    return TARVANE_SOURCE_FOLDER;
}

const char* goldenFolder() {
    return TARVANE_SOURCE_FOLDER "/Tests/Golden";
}

const char* goldenFailuresFolder() {
    return TARVANE_BUILD_FOLDER "/golden-failures";
}

const char* toneSource() {
    return TARVANE_TONE_SOURCE;
}

}  // namespace TarvaneTests::TestPaths
