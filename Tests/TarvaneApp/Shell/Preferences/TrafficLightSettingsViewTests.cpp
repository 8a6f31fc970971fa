#include "Shell/Preferences/TrafficLightSettingsView.h"

#include <gtest/gtest.h>

#include <QColorDialog>
#include <QGroupBox>
#include <QTest>

#include "Shell/Forms/ColorWell.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Shell/Preferences/FormWidgets.h"

namespace TarvaneApp {
namespace TrafficLightSettingsViewTests {

using namespace TarvaneTests;
using TarvaneKit::RGBAColor;
using TarvaneKit::TrafficLightConfig;
namespace SignalColors = TarvaneKit::SignalColors;

class TrafficLightSettingsViewTests : public EngineFixture {
  protected:
    TrafficLightSettingsViewTests() : form(*engine) { form.show(); }

    QWidget& section(int place) { return *form.findChildren<QGroupBox*>()[place]; }
    QSlider& slider(int place, int band) {
        return named<QSlider>(section(place), QStringLiteral("At/above, band %1").arg(band));
    }
    QAbstractButton& reset(int place) {
        return button(section(place), QStringLiteral("Reset to Default"));
    }
    // As a user does: opens the well's dialog and takes the colour.
    void paint(QWidget& among, const QString& name, const QColor& color) {
        auto& well = named<ColorWell>(among, name);
        well.click();
        auto* dialog = well.findChild<QColorDialog*>();
        ASSERT_NE(dialog, nullptr);
        dialog->setCurrentColor(color);
        dialog->accept();
        settle();
    }
    std::vector<double> thresholds(const TrafficLightConfig& config) {
        return {config.bands[0].thresholdDB, config.bands[1].thresholdDB};
    }

    TrafficLightSettingsView form;
};

TEST_F(TrafficLightSettingsViewTests, threeSectionsHaveTheirTitles) {
    QStringList titles;
    for (const QGroupBox* box : form.findChildren<QGroupBox*>()) {
        titles.append(box->title());
    }
    EXPECT_EQ(titles, (QStringList{"SPL Thresholds (calibrated, SPL readout)",
                                   "dBFS Thresholds (dBFS readout, or uncalibrated)",
                                   "Loudness (LUFS channels)"}));
}

TEST_F(TrafficLightSettingsViewTests, eachBandReadsItsThreshold) {
    EXPECT_EQ(slider(0, 1).accessibleDescription(), "100 dB");
    EXPECT_EQ(slider(0, 2).accessibleDescription(), "85 dB");
    EXPECT_EQ(slider(1, 1).accessibleDescription(), "-3 dB");
    EXPECT_EQ(slider(1, 2).accessibleDescription(), "-12 dB");
    EXPECT_EQ(labels(section(0)).filter(QStringLiteral("At/above")).size(), 2);
    EXPECT_TRUE(labels(section(0)).contains(QStringLiteral("Below all thresholds →")));
    // A slider counts whole dB, so its ends are the range's and the limit of the band above.
    EXPECT_EQ(slider(0, 1).minimum(), 0);
    EXPECT_EQ(slider(0, 1).maximum(), 140);
    EXPECT_EQ(slider(0, 2).maximum(), 100);
    EXPECT_EQ(slider(1, 1).minimum(), -120);
    EXPECT_EQ(slider(1, 1).maximum(), 0);
}

TEST_F(TrafficLightSettingsViewTests, theFirstBandTakesTheSecondAlongDown) {
    slider(0, 1).setValue(80);
    EXPECT_EQ(thresholds(engine->trafficLightConfig()), (std::vector<double>{80.0, 80.0}));
    EXPECT_EQ(slider(0, 2).accessibleDescription(), "80 dB");
    EXPECT_EQ(slider(0, 2).maximum(), 80) << "the second can't pass the first";
    QTest::keyClick(&slider(0, 2), Qt::Key_Right);
    EXPECT_EQ(thresholds(engine->trafficLightConfig()), (std::vector<double>{80.0, 80.0}));
    EXPECT_EQ(engine->trafficLightConfigDBFS(), TrafficLightConfig::defaultDBFS());
}

TEST_F(TrafficLightSettingsViewTests, aSliderStaysUsableAtTheBottomOfTheRange) {
    slider(1, 1).setValue(-120);
    EXPECT_EQ(thresholds(engine->trafficLightConfigDBFS()), (std::vector<double>{-120.0, -120.0}));
    EXPECT_EQ(slider(1, 2).maximum() - slider(1, 2).minimum(), 1);
    slider(1, 2).setValue(-119);
    EXPECT_EQ(thresholds(engine->trafficLightConfigDBFS()), (std::vector<double>{-120.0, -120.0}));
    EXPECT_EQ(slider(1, 2).value(), -120);
}

TEST_F(TrafficLightSettingsViewTests, resetIsOfferedWhereSomethingIsAnother) {
    for (int place = 0; place < 3; ++place) {
        EXPECT_FALSE(reset(place).isEnabled()) << place;
    }
    slider(0, 2).setValue(70);
    EXPECT_TRUE(reset(0).isEnabled());
    EXPECT_FALSE(reset(1).isEnabled());
    reset(0).click();
    EXPECT_EQ(engine->trafficLightConfig(), TrafficLightConfig::defaultSPL());
    EXPECT_FALSE(reset(0).isEnabled());
    // Back by hand is back, too.
    slider(1, 2).setValue(-20);
    EXPECT_TRUE(reset(1).isEnabled());
    slider(1, 2).setValue(-12);
    EXPECT_FALSE(reset(1).isEnabled());
}

TEST_F(TrafficLightSettingsViewTests, coloursAreEditedAndResetWithTheRest) {
    paint(section(0), QStringLiteral("Color, band 2"), QColor(255, 0, 255));
    EXPECT_EQ(engine->trafficLightConfig().bands[1].color, (RGBAColor{1.0, 0.0, 1.0, 1.0}));
    EXPECT_EQ(engine->trafficLightConfig().bands[0].color, SignalColors::red);
    paint(section(0), QStringLiteral("Color: Below all thresholds"), QColor(0, 0, 255));
    EXPECT_EQ(engine->trafficLightConfig().belowAllColor, (RGBAColor{0.0, 0.0, 1.0, 1.0}));
    reset(0).click();
    EXPECT_EQ(engine->trafficLightConfig(), TrafficLightConfig::defaultSPL());
}

TEST_F(TrafficLightSettingsViewTests, aTableOfAnotherLengthIsEditedAsItIs) {
    engine->trafficLightConfig.set(
        TrafficLightConfig::create("x", {{110.0, {}}, {90.0, {}}, {70.0, {}}}, {}));
    EXPECT_EQ(slider(0, 3).accessibleDescription(), "70 dB");
    engine->trafficLightConfig.set(TrafficLightConfig::create("x", {}, {}));
    EXPECT_TRUE(labels(section(0)).filter(QStringLiteral("At/above")).isEmpty());
    reset(0).click();
    EXPECT_EQ(slider(0, 2).accessibleDescription(), "85 dB");
}

TEST_F(TrafficLightSettingsViewTests, loudnessColoursSayWhereTheyBegin) {
    const auto details = [&] { return labels(section(2)); };
    for (const char* text :
         {"Above target", "louder than -22.0 LUFS", "On target", "-24.0 to -22.0 LUFS",
          "Below target", "quieter than -24.0 LUFS", "True peak over ceiling", "above -1.0 dBTP",
          "True peak within ceiling", "at or below -1.0 dBTP"}) {
        EXPECT_TRUE(details().contains(QLatin1String(text))) << text;
    }
    engine->loudnessTarget.set(LoudnessTarget::presets()[1]);  // -24 ±2, ceiling -2
    for (const char* text : {"louder than -22.0 LUFS", "-26.0 to -22.0 LUFS",
                             "quieter than -26.0 LUFS", "above -2.0 dBTP"}) {
        EXPECT_TRUE(details().contains(QLatin1String(text))) << text;
    }
    EXPECT_TRUE(details().contains(QStringLiteral(
        "Thresholds follow the loudness target (ATSC A/85 (−24 LKFS)), set in the Loudness tab. "
        "These colors apply to the loudness readout and to Level History on loudness channels.")));
    // A name that is no longer true is not told.
    LoudnessTarget edited = LoudnessTarget::presets()[1];
    edited.toleranceLU = 1.0;
    engine->loudnessTarget.set(edited);
    EXPECT_EQ(details().filter(QStringLiteral("loudness target (Custom)")).size(), 1);
}

TEST_F(TrafficLightSettingsViewTests, loudnessColoursAreEditedAndReset) {
    paint(section(2), QStringLiteral("Color: True peak over ceiling"), QColor(255, 0, 255));
    LoudnessColors expected;
    expected.truePeakOver = {1.0, 0.0, 1.0, 1.0};
    EXPECT_EQ(engine->loudnessColors(), expected);
    EXPECT_TRUE(reset(2).isEnabled());
    reset(2).click();
    EXPECT_EQ(engine->loudnessColors(), LoudnessColors{});
}

}  // namespace TrafficLightSettingsViewTests
}  // namespace TarvaneApp
