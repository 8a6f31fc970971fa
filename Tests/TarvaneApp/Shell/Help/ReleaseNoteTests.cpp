#include "Shell/Help/ReleaseNote.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Build/Version.h"

namespace TarvaneApp {
namespace ReleaseNoteTests {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Not;

auto note(const char* version, const char* date) {
    return testing::AllOf(Field(&ReleaseNote::version, version), Field(&ReleaseNote::date, date),
                          Field(&ReleaseNote::highlights, Not(IsEmpty())));
}

TEST(ReleaseNoteTests, everyVersionHasItsDateNewestFirst) {
    EXPECT_THAT(releaseNotes(),
                ElementsAre(note("1.3.1", "October 8, 2026"), note("1.3.0", "October 7, 2026"),
                            note("1.2.0", "October 3, 2026"), note("1.1.1", "September 30, 2026"),
                            note("1.1.0", "September 30, 2026"), note("1.0.0", "Initial release")));
}

TEST(ReleaseNoteTests, theNewestIsTheVersionThatIsBuilt) {
    EXPECT_EQ(releaseNotes().front().version, Build::version);
}

}  // namespace ReleaseNoteTests
}  // namespace TarvaneApp
