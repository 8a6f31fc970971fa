#include "Shell/Preferences/DisplaySettingsView.h"

#include <gtest/gtest.h>

#include <QColorDialog>
#include <QTest>

#include "Displays/Spectrogram/SpectrogramView.h"
#include "Records/SpectrogramColorRamp.h"
#include "Shell/Forms/ColorWell.h"
#include "Shell/Forms/FormTextField.h"
#include "Shell/Preferences/SpectrogramRampBar.h"
#include "Shell/Preferences/TextFieldStore.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Shell/Preferences/FormWidgets.h"

namespace TarvaneApp {
namespace DisplaySettingsViewTests {

using namespace TarvaneTests;
using TarvaneKit::RGBAColor;
using TarvaneKit::UUID;

constexpr RGBAColor black{0.0, 0.0, 0.0, 1.0};
constexpr RGBAColor red{1.0, 0.0, 0.0, 1.0};
constexpr RGBAColor white{1.0, 1.0, 1.0, 1.0};

SpectrogramColorStop stop(double position, const RGBAColor& color) {
    return {.id = UUID::random(), .position = position, .color = color};
}

class DisplaySettingsViewTests : public EngineFixture {
  protected:
    DisplaySettingsViewTests() : form(*engine, texts) { form.show(); }

    QSlider& level(int row) {
        return named<QSlider>(form, QStringLiteral("Color %1, level").arg(row));
    }
    QString levelText(int row) { return level(row).accessibleDescription(); }
    QAbstractButton& remove(int row) {
        return named<QAbstractButton>(form, QStringLiteral("Remove Color %1").arg(row));
    }
    int rows() {
        int count = 0;
        for (const auto* slider : form.findChildren<QSlider*>()) {
            count += slider->isVisible() ? 1 : 0;
        }
        return count;
    }
    std::vector<double> positions() {
        std::vector<double> result;
        for (const auto& each : engine->spectrogramColorStops()) {
            result.push_back(each.position);
        }
        return result;
    }
    FormTextField& name() { return named<FormTextField>(form, QStringLiteral("Preset name")); }
    QAbstractButton& save() { return button(form, QStringLiteral("Save Current as Preset")); }
    // Uncalibrated, the main input's range is in dBFS, from -100 to -20 at first.
    void useRamp(std::vector<SpectrogramColorStop> stops) {
        engine->spectrogramColorStops.set(std::move(stops));
    }

    TextFieldStore texts;
    DisplaySettingsView form;
};

TEST_F(DisplaySettingsViewTests, theMetersPlaceShowsAClockOrALevelBar) {
    auto& toggle = button(form, QStringLiteral("Show clock instead of SPL meter"));
    toggle.click();
    EXPECT_TRUE(engine->splReadoutShowsClock());
    engine->splReadoutShowsClock.set(false);
    EXPECT_FALSE(toggle.isChecked()) << "a menu or a key turns it, too";
    auto& bar = button(form, QStringLiteral("Show level bar in SPL meter"));
    EXPECT_TRUE(bar.isChecked());
    bar.click();
    EXPECT_FALSE(engine->splMeterShowsLevelBar());
    EXPECT_TRUE(labels(form).contains(QStringLiteral(
        "Replaces the whole SPL meter module — value, Min/Max, and Reset — with a live clock, "
        "wherever that module is placed. Also toggled from the View menu or Ctrl+Shift+C.")));
    EXPECT_TRUE(labels(form).contains(QStringLiteral(
        "Readout units, the RTA's view, band resolution, peak hold, ring-out sensitivity and "
        "target curve are set per channel, in each channel's Display section in the Audio tab.")));
}

TEST_F(DisplaySettingsViewTests, eachStopReadsTheLevelWhereItsColourBegins) {
    EXPECT_EQ(rows(), 9);
    EXPECT_EQ(levelText(1), "-100 dBFS");
    EXPECT_EQ(levelText(2), "-70 dBFS");  // -100 + 0.378 · 80 = -69.76
    EXPECT_EQ(levelText(9), "-20 dBFS");
    engine->setSpectrogramFloorDB(-120.0, UUID::main());
    EXPECT_EQ(levelText(1), "-120 dBFS") << "the toolbar's floor";
    EXPECT_EQ(level(1).minimum(), -120);
    EXPECT_EQ(level(1).maximum(), -20);
}

TEST_F(DisplaySettingsViewTests, theLevelsAreThoseOfTheChannelThatTheSpectrogramShows) {
    const auto stage = addChannel("Stage", "desk", 2);
    engine->setSpectrogramCeilingDB(-10.0, stage.id);
    EXPECT_EQ(levelText(9), "-20 dBFS");
    engine->spectrogramChannelID.set(stage.id);
    EXPECT_EQ(levelText(9), "-10 dBFS");
    engine->removeChannel(stage.id);
    EXPECT_EQ(levelText(9), "-20 dBFS");
    TarvaneKit::CalibrationProfile calibrated;
    calibrated.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 120.0,
                                                            .referenceDeviceUID = {},
                                                            .referenceDeviceName = {},
                                                            .calibratedAt = {},
                                                            .inputGainDB = {}};
    engine->calibration.set(calibrated);
    EXPECT_EQ(levelText(1), "30 dB");
    EXPECT_EQ(levelText(9), "110 dB");
}

TEST_F(DisplaySettingsViewTests, aSliderMovesItsStop) {
    useRamp({stop(0.0, black), stop(0.5, red), stop(1.0, white)});
    level(2).setValue(-80);
    EXPECT_EQ(positions(), (std::vector<double>{0.0, 0.25, 1.0}));  // 20 of 80 dB
    QTest::keyClick(&level(2), Qt::Key_Right);
    EXPECT_EQ(levelText(2), "-79 dBFS");
}

TEST_F(DisplaySettingsViewTests, aStopThatPassesOthersKeepsItsRowWhileItIsInUse) {
    useRamp({stop(0.0, black), stop(0.5, red), stop(1.0, white)});
    form.activateWindow();
    waitUntil([&] { return form.isActiveWindow(); });
    level(1).setFocus();
    level(1).setValue(-40);
    EXPECT_EQ(levelText(1), "-40 dBFS");
    EXPECT_EQ(levelText(2), "-60 dBFS");
    level(1).setValue(-30);
    EXPECT_EQ(positions(), (std::vector<double>{0.875, 0.5, 1.0})) << "still the same stop";
    // Elsewhere, they stand in order again.
    name().setFocus();
    form.refresh();
    EXPECT_EQ(levelText(1), "-60 dBFS");
    EXPECT_EQ(levelText(2), "-30 dBFS");
    level(2).setValue(-40);
    EXPECT_EQ(positions(), (std::vector<double>{0.75, 0.5, 1.0}));
}

TEST_F(DisplaySettingsViewTests, aNarrowRangeHasFinerSteps) {
    engine->setSpectrogramFloorDB(-25.0, UUID::main());
    useRamp({stop(0.0, black), stop(1.0, white)});
    EXPECT_EQ(levelText(1), "-25.0 dBFS");
    QTest::keyClick(&level(1), Qt::Key_Right);
    EXPECT_NEAR(positions()[0], 0.02, 1e-9);  // 0.1 of 5 dB
}

TEST_F(DisplaySettingsViewTests, aSwatchChangesItsStopsColour) {
    useRamp({stop(0.0, black), stop(1.0, white)});
    auto& well = named<ColorWell>(form, QStringLiteral("Color 2"));
    well.click();
    auto* dialog = well.findChild<QColorDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor(QColor(0, 255, 0));
    EXPECT_EQ(engine->spectrogramColorStops()[1].color, (RGBAColor{0.0, 1.0, 0.0, 1.0}));
    dialog->reject();
    EXPECT_EQ(engine->spectrogramColorStops()[1].color, white) << "cancelled";
}

TEST_F(DisplaySettingsViewTests, addColorFillsTheWidestGap) {
    useRamp({stop(0.0, black), stop(0.25, red), stop(1.0, white)});
    button(form, QStringLiteral("Add Color")).click();
    EXPECT_EQ(positions(), (std::vector<double>{0.0, 0.25, 0.625, 1.0}));
    EXPECT_EQ(engine->spectrogramColorStops()[2].color, (RGBAColor{1.0, 0.5, 0.5, 1.0}));
    EXPECT_EQ(rows(), 4);
    EXPECT_EQ(levelText(3), "-50 dBFS");  // -100 + 0.625 · 80
}

TEST_F(DisplaySettingsViewTests, minusRemovesAStopButNotTheLast) {
    useRamp({stop(0.0, black), stop(0.5, red), stop(1.0, white)});
    remove(2).click();
    EXPECT_EQ(positions(), (std::vector<double>{0.0, 1.0}));
    remove(1).click();
    EXPECT_EQ(positions(), (std::vector<double>{1.0}));
    EXPECT_FALSE(remove(1).isEnabled());
    EXPECT_EQ(rows(), 1);
    useRamp({});
    EXPECT_EQ(rows(), 0) << "an empty ramp, as a file may have it";
    button(form, QStringLiteral("Add Color")).click();
    EXPECT_EQ(rows(), 1);
}

TEST_F(DisplaySettingsViewTests, resetBringsTheDefaultRampBack) {
    auto& reset = button(form, QStringLiteral("Reset to Default"));
    EXPECT_FALSE(reset.isEnabled());
    remove(3).click();
    EXPECT_TRUE(reset.isEnabled());
    reset.click();
    EXPECT_EQ(engine->spectrogramColorStops(), defaultSpectrogramColorStops());
    EXPECT_FALSE(reset.isEnabled());
}

TEST_F(DisplaySettingsViewTests, theStripIsColouredAsTheSpectrogramIs) {
    useRamp({stop(0.0, red), stop(0.5, red), stop(0.5, white), stop(1.0, white)});
    auto& bar = *form.findChild<SpectrogramRampBar*>();
    const QImage picture = bar.grab().toImage();
    const auto& stops = engine->spectrogramColorStops();
    const int row = picture.height() / 4;
    for (const double at : {0.1, 0.4, 0.6, 0.9}) {
        const QColor pixel = picture.pixelColor(static_cast<int>(at * picture.width()), row);
        EXPECT_EQ(pixel.rgb(), SpectrogramView::colorForT(at, stops)) << at;
    }
    EXPECT_EQ(bar.accessibleDescription(), "-100 dBFS to -20 dBFS");
}

// --- presets

TEST_F(DisplaySettingsViewTests, withoutPresetsTheFormSaysHowToMakeOne) {
    const QString empty = QStringLiteral(
        "No saved presets yet. Dial in a ramp above, then save it below to recall it later.");
    EXPECT_TRUE(labels(form).contains(empty));
    QTest::keyClicks(&name(), QStringLiteral("Fire"));
    save().click();
    EXPECT_FALSE(labels(form).contains(empty));
    EXPECT_TRUE(labels(form).contains(QStringLiteral("Fire")));
    named<QAbstractButton>(form, QStringLiteral("Delete Fire")).click();
    EXPECT_TRUE(labels(form).contains(empty));
    EXPECT_TRUE(engine->spectrogramColorPresets().empty());
}

TEST_F(DisplaySettingsViewTests, aPresetIsSavedUnderItsTrimmedNameAndApplied) {
    EXPECT_FALSE(save().isEnabled());
    QTest::keyClicks(&name(), QStringLiteral("  "));
    EXPECT_FALSE(save().isEnabled()) << "no name";
    QTest::keyClicks(&name(), QStringLiteral("Fire "));
    EXPECT_TRUE(save().isEnabled());
    const std::vector<SpectrogramColorStop> ramp{stop(0.0, red), stop(1.0, white)};
    useRamp(ramp);
    EXPECT_EQ(name().text(), "  Fire ") << "what is typed outlives a change";
    save().click();
    ASSERT_EQ(engine->spectrogramColorPresets().size(), 1U);
    EXPECT_EQ(engine->spectrogramColorPresets()[0], (SpectrogramColorPreset{"Fire", ramp}));
    EXPECT_EQ(name().text(), "");
    EXPECT_FALSE(save().isEnabled());
    button(form, QStringLiteral("Reset to Default")).click();
    named<QAbstractButton>(form, QStringLiteral("Apply Fire")).click();
    EXPECT_EQ(engine->spectrogramColorStops(), ramp);
}

TEST_F(DisplaySettingsViewTests, savingUnderANameThatExistsOverwrites) {
    engine->spectrogramColorPresets.set({{"Fire", {stop(0.0, red)}}, {"Ice", {stop(0.0, white)}}});
    QTest::keyClicks(&name(), QStringLiteral("Fire"));
    save().click();
    ASSERT_EQ(engine->spectrogramColorPresets().size(), 2U);
    EXPECT_EQ(engine->spectrogramColorPresets()[0].name, "Fire");
    EXPECT_EQ(engine->spectrogramColorPresets()[0].stops, defaultSpectrogramColorStops());
}

TEST_F(DisplaySettingsViewTests, aHalfTypedNameOutlivesTheForm) {
    QTest::keyClicks(&name(), QStringLiteral("Fi"));
    EXPECT_EQ(texts.newSpectrogramPresetName(), "Fi");
    DisplaySettingsView another(*engine, texts);
    another.show();
    EXPECT_EQ(named<FormTextField>(another, QStringLiteral("Preset name")).text(), "Fi");
}

}  // namespace DisplaySettingsViewTests
}  // namespace TarvaneApp
