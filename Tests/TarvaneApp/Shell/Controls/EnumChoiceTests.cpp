#include "Shell/Controls/EnumChoice.h"

#include <gtest/gtest.h>

#include "Records/DisplayEnums.h"

namespace TarvaneApp {
namespace EnumChoiceTests {

using Choice = EnumChoice<ReadoutUnit>;

TEST(EnumChoiceTests, anIndexLeadsBackToItsCase) {
    int index = 0;
    for (const ReadoutUnit unit : TarvaneKit::allCases<ReadoutUnit>()) {
        EXPECT_EQ(Choice::index(unit), index);
        EXPECT_EQ(Choice::at(index), unit);
        EXPECT_EQ(Choice::labels()[index], rawText(unit));
        ++index;
    }
    EXPECT_EQ(Choice::labels().size(), index);
}

TEST(EnumChoiceTests, anItemPicksItsCaseAndTheCurrentOneIsMarked) {
    std::vector<ReadoutUnit> picked;
    const auto items = Choice::items(
        ReadoutUnit::dbfs, [&picked](ReadoutUnit unit) { picked.push_back(unit); },
        [](ReadoutUnit unit) { return rawText(unit) + u'!'; });
    ASSERT_EQ(items.size(), TarvaneKit::allCases<ReadoutUnit>().size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const ReadoutUnit unit = TarvaneKit::allCases<ReadoutUnit>()[i];
        EXPECT_EQ(items[i].text, rawText(unit) + u'!');
        EXPECT_EQ(items[i].isCurrent, unit == ReadoutUnit::dbfs);
        items[i].action();
        EXPECT_EQ(picked.back(), unit);
    }
}

}  // namespace EnumChoiceTests
}  // namespace TarvaneApp
