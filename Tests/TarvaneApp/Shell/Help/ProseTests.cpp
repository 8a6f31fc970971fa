#include "Shell/Help/Prose.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TarvaneApp {
namespace ProseTests {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ProseTests, wordsBetweenPairsOfAsterisksAreBold) {
    EXPECT_THAT(prose("Press **Space** or **P**."),
                ElementsAre(ProseRun{"Press ", false}, ProseRun{"Space", true},
                            ProseRun{" or ", false}, ProseRun{"P", true}, ProseRun{".", false}));
}

TEST(ProseTests, textWithoutMarkUpStaysAsItIs) {
    EXPECT_THAT(prose("20 * log10(2) _is_ `6.02` [dB](x)"),
                ElementsAre(ProseRun{"20 * log10(2) _is_ `6.02` [dB](x)", false}));
    EXPECT_THAT(prose(""), IsEmpty());
    EXPECT_EQ(plainProse("two  blanks stay"), "two  blanks stay");
}

TEST(ProseTests, aPairThatNothingClosesStandsForItself) {
    EXPECT_THAT(prose("**not closed"), ElementsAre(ProseRun{"**not closed", false}));
    EXPECT_THAT(prose("**bold** and **not"),
                ElementsAre(ProseRun{"bold", true}, ProseRun{" and **not", false}));
    EXPECT_THAT(prose("a ****"), ElementsAre(ProseRun{"a ****", false}));
    EXPECT_EQ(plainProse("a **"), "a **");
}

TEST(ProseTests, bytesBeyondASCIIAreRead) {
    EXPECT_THAT(prose("≥ **−23 LUFS**"),
                ElementsAre(ProseRun{"≥ ", false}, ProseRun{"−23 LUFS", true}));
}

TEST(ProseTests, aLabelGetsEscapedTextWithTheBoldWordsInTheirColor) {
    const QString html = proseHTML("a < b & **c > d**", QColor(0x12, 0x34, 0x56));
    EXPECT_TRUE(html.contains("a &lt; b &amp; ")) << html.toStdString();
    EXPECT_TRUE(html.contains("<span style=\"font-weight:600; color:#123456\">c &gt; d</span>"))
        << html.toStdString();
}

}  // namespace ProseTests
}  // namespace TarvaneApp
