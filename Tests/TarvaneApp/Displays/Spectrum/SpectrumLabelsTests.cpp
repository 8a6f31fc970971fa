#include "Displays/Spectrum/SpectrumLabels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Displays/Spectrum/SpectrumView.h"
#include "Support/PinnedTypeface.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace SpectrumLabelsTests {

using TarvaneTests::spectrumInDBFS;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

std::vector<std::string> texts(const std::vector<SpectrumLabel>& labels) {
    std::vector<std::string> all;
    for (const SpectrumLabel& label : labels) {
        all.push_back(label.text.toStdString());
    }
    return all;
}

const SpectrumLabel* find(const std::vector<SpectrumLabel>& labels, const char* text) {
    const auto found = std::ranges::find(labels, QLatin1String(text), &SpectrumLabel::text);
    return found != labels.end() ? &*found : nullptr;
}

TEST(SpectrumLabels, allLabelsStandAtAnOrdinarySize) {
    const auto labels = layoutLabels(TarvaneTests::ordinarySpectrum(), {900.0, 300.0}, pinned);
    EXPECT_THAT(texts(labels.grid),
                testing::UnorderedElementsAre("20", "50", "100", "200", "500", "1k", "2k", "5k",
                                              "10k", "20k", "0", "+20", "+40", "+60", "+80", "+100",
                                              "+120", "+140"));
    EXPECT_THAT(texts(labels.floorCeiling), testing::UnorderedElementsAre("FLOOR", "CEILING"));
}

TEST(SpectrumLabels, labelsStandBesideTheirRules) {
    const auto labels = layoutLabels(TarvaneTests::ordinarySpectrum(), {900.0, 300.0}, pinned);
    EXPECT_NEAR(find(labels.grid, "200")->rect.left(), 303.0, 1e-9);
    EXPECT_NEAR(find(labels.grid, "20k")->rect.right(), 897.0, 1e-9);  // on the inner side
    EXPECT_NEAR(find(labels.grid, "20k")->rect.top(), 290.0, 1e-9);
    EXPECT_LE(find(labels.grid, "0")->rect.top(), 280.0);
    EXPECT_LT(find(labels.grid, "0")->plate().bottom(), find(labels.grid, "20")->plate().top());
    EXPECT_NEAR(find(labels.grid, "+140")->rect.top(), 2.0, 1e-9);
    EXPECT_NEAR(find(labels.grid, "+60")->rect.top(), 300.0 * 80.0 / 140.0 - 6.0, 1e-9);
    EXPECT_NEAR(find(labels.floorCeiling, "FLOOR")->rect.right(), 896.0, 1e-9);
    EXPECT_NEAR(find(labels.floorCeiling, "FLOOR")->rect.top(), 300.0 * 110.0 / 140.0 - 15.0, 1e-9);
}

TEST(SpectrumLabels, labelsOfDBFSHaveThePlainMinus) {
    const auto labels = layoutLabels(spectrumInDBFS(), {900.0, 300.0}, pinned);
    EXPECT_NE(find(labels.grid, "-140"), nullptr);
    EXPECT_NE(find(labels.grid, "0"), nullptr);
}

TEST(SpectrumLabels, floorAndCeilingOnTheEndsOfTheAxisHaveNoLabels) {
    SpectrumView view;
    view.spectrogramFloorDB = 0.0;
    view.spectrogramCeilingDB = 140.0;
    EXPECT_TRUE(layoutLabels(view, {900.0, 300.0}, pinned).floorCeiling.empty());
}

TEST(SpectrumLabels, aLevelNeverStandsAtAnotherOnesRule) {
    for (const SpectrumView& view : {TarvaneTests::ordinarySpectrum(), spectrumInDBFS()}) {
        for (double height = 60.0; height < 600.0; height += 7.0) {
            for (const SpectrumLabel& label : layoutLabels(view, {900.0, height}, pinned).grid) {
                const bool isLevel = label.text == QStringLiteral("0") ||
                                     label.text.startsWith(u'+') || label.text.startsWith(u'-');
                if (!isLevel) {
                    continue;
                }
                for (const double other : view.levelGridLines()) {
                    const double rule = view.y(other, height);
                    EXPECT_FALSE(other != label.text.toDouble() && label.plate().top() <= rule &&
                                 rule <= label.plate().bottom())
                        << label.text.toStdString() << " at " << other << ", height " << height;
                }
            }
        }
    }
}

TEST(SpectrumLabels, whatABannerCoversHasNoLabels) {
    SpectrumView view = TarvaneTests::ordinarySpectrum();
    view.covered = QRectF(700.0, 10.0, 190.0, 40.0);
    view.spectrogramCeilingDB = 126.0;  // its label would be at 15
    const SpectrumLabels labels = layoutLabels(view, {900.0, 300.0}, pinned);
    for (const auto* group : {&labels.grid, &labels.floorCeiling, &labels.curve}) {
        for (const SpectrumLabel& label : *group) {
            EXPECT_FALSE(label.plate().intersects(view.covered)) << label.text.toStdString();
        }
    }
    EXPECT_NE(find(labels.floorCeiling, "FLOOR"), nullptr);
    // A label that is in the way leaves; it doesn't go where its line isn't.
    view.covered = QRectF(700.0, 0.0, 200.0, 120.0);
    EXPECT_EQ(find(layoutLabels(view, {900.0, 300.0}, pinned).floorCeiling, "CEILING"), nullptr);
}

TEST(SpectrumLabels, theTargetCurveIsNamedAtItsEndAlsoOnTheCeiling) {
    SpectrumView view = spectrumInDBFS();
    view.targetCurve = TarvaneKit::TargetCurve{"House", {{20.0, 0.0}, {20000.0, 0.0}}};
    view.targetCurveReferenceDB = -20.0;
    view.spectrogramCeilingDB = -20.0;
    const SpectrumLabels labels = layoutLabels(view, {900.0, 300.0}, pinned);
    ASSERT_EQ(labels.curve.size(), 1U);
    const SpectrumLabel& name = labels.curve.front();
    EXPECT_EQ(name.text, QStringLiteral("House"));
    EXPECT_EQ(name.color, Theme::targetCurve);
    EXPECT_GT(name.rect.right(), 750.0);
    EXPECT_NEAR(name.rect.center().y(), view.y(-20.0, 300.0), 16.0);
    EXPECT_FALSE(name.plate().intersects(find(labels.floorCeiling, "CEILING")->plate()));
    view.targetCurve->name = "A Curve with a Rather Long Name";
    EXPECT_EQ(layoutLabels(view, {900.0, 300.0}, pinned).curve.size(), 1U);
    EXPECT_TRUE(layoutLabels(view, {300.0, 300.0}, pinned).curve.empty());
    view.targetCurve.reset();
    EXPECT_TRUE(layoutLabels(view, {900.0, 300.0}, pinned).curve.empty());
}

TEST(SpectrumLabels, noLabelTouchesAnotherOrLeavesTheGraphAtAnySize) {
    SpectrumView view = TarvaneTests::ordinarySpectrum();
    for (const double width : {120.0, 240.0, 320.0, 480.0, 900.0, 1900.0, 3840.0}) {
        for (const double height : {60.0, 100.0, 150.0, 170.0, 200.0, 300.0, 2160.0}) {
            for (const auto& [floorDB, ceilingDB] :
                 {std::pair{30.0, 110.0}, {1.0, 139.5}, {60.0, 63.0}, {2.0, 5.0}}) {
                view.spectrogramFloorDB = floorDB;
                view.spectrogramCeilingDB = ceilingDB;
                const SpectrumLabels labels = layoutLabels(view, {width, height}, pinned);
                std::vector<SpectrumLabel> all = labels.grid;
                all.insert(all.end(), labels.floorCeiling.begin(), labels.floorCeiling.end());
                all.insert(all.end(), labels.curve.begin(), labels.curve.end());
                EXPECT_NE(find(all, "1k"), nullptr) << width << 'x' << height;
                for (std::size_t i = 0; i < all.size(); ++i) {
                    EXPECT_GE(all[i].rect.left(), 0.0);
                    EXPECT_LE(all[i].rect.right(), width);
                    EXPECT_GE(all[i].rect.top(), 0.0);
                    EXPECT_LE(all[i].rect.top() + 9.0, height);
                    for (std::size_t j = i + 1; j < all.size(); ++j) {
                        EXPECT_FALSE(all[i].plate().intersects(all[j].plate()))
                            << all[i].text.toStdString() << " and " << all[j].text.toStdString()
                            << " at " << width << 'x' << height;
                    }
                }
            }
        }
    }
}

}  // namespace SpectrumLabelsTests
}  // namespace TarvaneApp
