#include "Shell/ChannelControls/TargetCurveControls.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QSlider>

#include "Shell/ChannelControls/TargetCurveReferenceControl.h"
#include "Shell/Controls/MenuButton.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace TargetCurveControlsTests {

using TarvaneKit::UUID;

class TargetCurveControlsTests : public TarvaneTests::EngineFixture {
  protected:
    TargetCurveControlsTests() : controls(*engine, UUID::main(), QStringLiteral("Curve level")) {
        controls.show();
        settle();
    }

    MenuButton& curves() { return *controls.findChild<MenuButton*>(); }
    TargetCurveReferenceControl& reference() {
        return *controls.findChild<TargetCurveReferenceControl*>();
    }
    QSlider& slider() { return *reference().findChild<QSlider*>(); }
    QString value() { return reference().findChild<QLabel*>()->text(); }

    // A reference tone makes a channel read in dB SPL.
    static TarvaneKit::CalibrationProfile calibrated() {
        TarvaneKit::CalibrationProfile profile;
        profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 120.0,
                                                             .referenceDeviceUID = {},
                                                             .referenceDeviceName = {},
                                                             .calibratedAt = {},
                                                             .inputGainDB = {}};
        return profile;
    }

    TargetCurveControls controls;
};

TEST_F(TargetCurveControlsTests, noneStandsAheadOfTheBuiltInCurves) {
    QStringList texts;
    for (const QAction* item : curves().menu()->actions()) {
        texts.append(item->text());
    }
    EXPECT_EQ(texts, (QStringList{"None", "Flat", "X-Curve (SMPTE ST202 / ISO 2969)"}));
    EXPECT_EQ(curves().text(), texts[2]) << "of a new channel";
}

TEST_F(TargetCurveControlsTests, theLevelIsThereOnlyWithACurve) {
    curves().menu()->actions()[0]->trigger();
    EXPECT_EQ(engine->selectedTargetCurveName(), std::nullopt);
    EXPECT_FALSE(reference().isVisible());
    curves().menu()->actions()[1]->trigger();
    EXPECT_EQ(engine->selectedTargetCurveName(), "Flat");
    EXPECT_TRUE(reference().isVisible());
    // A name that no curve has draws none.
    engine->selectedTargetCurveName.set("X-Curve");
    EXPECT_EQ(curves().text(), QStringLiteral("None"));
    EXPECT_FALSE(reference().isVisible());
}

TEST_F(TargetCurveControlsTests, eachUnitHasALevelAndABoundOfItsOwn) {
    EXPECT_EQ(slider().minimum(), -80);
    EXPECT_EQ(slider().maximum(), 0);
    EXPECT_EQ(value(), QStringLiteral("-20 dBFS"));
    slider().setValue(-33);
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDBFS(), -33.0);
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDB(), 85.0);
    EXPECT_EQ(value(), QStringLiteral("-33 dBFS"));
    engine->calibration.set(calibrated());
    EXPECT_EQ(slider().minimum(), 40);
    EXPECT_EQ(slider().maximum(), 120);
    EXPECT_EQ(value(), QStringLiteral("85 dB SPL"));
    slider().setValue(93);
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDB(), 93.0);
    engine->splReadoutShowsDBFS.set(true);
    EXPECT_EQ(slider().value(), -33) << "kept while the other unit was read";
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDBFS(), -33.0);
}

TEST_F(TargetCurveControlsTests, aLevelBeyondTheSliderStaysUntilTheSliderIsMoved) {
    engine->targetCurveReferenceDBFS.set(-95.0);
    EXPECT_EQ(slider().value(), -80);
    EXPECT_EQ(value(), QStringLiteral("-95 dBFS"));
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDBFS(), -95.0);
    slider().setValue(-79);
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDBFS(), -79.0);
}

TEST_F(TargetCurveControlsTests, theHelpTellsThatEachUnitHasItsLevel) {
    EXPECT_EQ(reference().toolTip(),
              QStringLiteral("Where the target curve's 0 dB sits — set separately for the SPL and "
                             "dBFS readouts"));
}

TEST_F(TargetCurveControlsTests, anotherChannelsCurveIsItsOwn) {
    const auto stage = addChannel("Stage", "desk", 2);
    controls.setChannelID(stage.id);
    curves().menu()->actions()[1]->trigger();
    slider().setValue(-50);
    EXPECT_EQ(engine->display(stage.id).targetCurveName, "Flat");
    EXPECT_DOUBLE_EQ(engine->display(stage.id).targetCurveReferenceDBFS, -50.0);
    EXPECT_DOUBLE_EQ(engine->targetCurveReferenceDBFS(), -20.0);
    controls.setChannelID(UUID::main());
    EXPECT_EQ(value(), QStringLiteral("-20 dBFS"));
    EXPECT_TRUE(curves().text().startsWith(QStringLiteral("X-Curve")));
}

}  // namespace TargetCurveControlsTests
}  // namespace TarvaneApp
