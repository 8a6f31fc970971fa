#include "Shell/Forms/FoldingGroup.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTest>
#include <vector>

namespace TarvaneApp {
namespace FoldingGroupTests {

class FoldingGroupTests : public testing::Test {
  protected:
    FoldingGroupTests() {
        QObject::connect(&group, &FoldingGroup::folded,
                         [this](bool isExpanded) { folds.push_back(isExpanded); });
        group.show();
    }

    int made = 0;
    std::vector<bool> folds;
    struct Group : FoldingGroup {
        using FoldingGroup::FoldingGroup;
        using FoldingGroup::setTitle;
    };
    Group group{[this](QWidget* parent) {
        ++made;
        return new QLabel(QStringLiteral("content"), parent);
    }};
};

TEST_F(FoldingGroupTests, makesItsContentWhenItIsFirstUnfolded) {
    EXPECT_FALSE(group.isExpanded());
    EXPECT_EQ(group.content(), nullptr);
    group.header().click();
    ASSERT_NE(group.content(), nullptr);
    EXPECT_TRUE(group.content()->isVisible());
    group.header().click();
    EXPECT_FALSE(group.content()->isVisible());
    group.header().click();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(folds, (std::vector<bool>{true, false, true}));
}

TEST_F(FoldingGroupTests, saysWhatAClickDoes) {
    EXPECT_EQ(group.header().accessibleName(), QStringLiteral("Expand"));
    EXPECT_EQ(group.header().toolTip(), QStringLiteral("Expand"));
    group.header().click();
    EXPECT_EQ(group.header().accessibleName(), QStringLiteral("Collapse"));
    EXPECT_EQ(group.header().toolTip(), QStringLiteral("Collapse"));
}

TEST_F(FoldingGroupTests, aScreenReaderHearsWhichOfSeveralItFolds) {
    group.setTitle(QStringLiteral("Stage"));
    EXPECT_EQ(group.accessibleName(), QStringLiteral("Stage"));
    EXPECT_EQ(group.header().accessibleName(), QStringLiteral("Expand Stage"));
    group.header().click();
    EXPECT_EQ(group.header().accessibleName(), QStringLiteral("Collapse Stage"));
}

TEST_F(FoldingGroupTests, theKeyboardFoldsItToo) {
    group.header().setFocus();
    QTest::keyClick(&group.header(), Qt::Key_Space);
    EXPECT_TRUE(group.isExpanded());
}

TEST_F(FoldingGroupTests, whatTheProgramFoldsIsNotTold) {
    group.setExpanded(true);
    EXPECT_EQ(group.header().accessibleName(), QStringLiteral("Collapse"));
    EXPECT_TRUE(group.content()->isVisible());
    EXPECT_TRUE(folds.empty());
}

}  // namespace FoldingGroupTests
}  // namespace TarvaneApp
