#include "Shell/Preferences/LoudnessSettingsView.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QTest>

#include "Shell/Forms/ValueStepper.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Shell/Preferences/FormWidgets.h"

namespace TarvaneApp {
namespace LoudnessSettingsViewTests {

using namespace TarvaneTests;
using TarvaneKit::LoudnessMetric;

class LoudnessSettingsViewTests : public EngineFixture {
  protected:
    LoudnessSettingsViewTests() : form(*engine) { form.show(); }

    QComboBox& preset() { return named<QComboBox>(form, QStringLiteral("Preset")); }
    ValueStepper& stepper(const char* name) {
        return named<ValueStepper>(form, QLatin1String(name));
    }

    LoudnessSettingsView form;
};

TEST_F(LoudnessSettingsViewTests, thePresetsAreOfferedAndPickedWhole) {
    const QStringList names{"EBU R128 (−23 LUFS)", "ATSC A/85 (−24 LKFS)", "Streaming (−14 LUFS)",
                            "Podcast (−16 LUFS)"};
    EXPECT_EQ(entries(preset()), names);
    EXPECT_EQ(preset().currentText(), names[0]);
    pick(preset(), names[1]);
    EXPECT_EQ(engine->loudnessTarget(), LoudnessTarget::presets()[1]);
    EXPECT_EQ(stepper("Target").text(), "-24 LUFS");
    EXPECT_EQ(stepper("Tolerance").text(), QStringLiteral("±2 LU"));
    EXPECT_EQ(stepper("True peak ceiling").text(), "-2 dB");
}

TEST_F(LoudnessSettingsViewTests, theSteppersGoInHalvesBetweenTheirEnds) {
    const auto& target = engine->loudnessTarget;
    stepper("Target").stepUp();
    EXPECT_EQ(target().targetLUFS, -22.5);
    stepper("Tolerance").stepDown();
    EXPECT_EQ(target().toleranceLU, 0.5);
    stepper("True peak ceiling").stepUp();
    EXPECT_EQ(target().truePeakCeilingDBTP, -0.5);
    const auto ends = [&](const char* name) {
        return std::pair(stepper(name).minimum(), stepper(name).maximum());
    };
    EXPECT_EQ(ends("Target"), std::pair(-40.0, -5.0));
    EXPECT_EQ(ends("Tolerance"), std::pair(0.5, 5.0));
    EXPECT_EQ(ends("True peak ceiling"), std::pair(-10.0, 0.0));
}

TEST_F(LoudnessSettingsViewTests, anEditedTargetIsCustomUntilItMatchesAPreset) {
    stepper("Tolerance").stepUp();
    EXPECT_EQ(preset().currentText(), "Custom");
    EXPECT_EQ(entries(preset()).size(), 5);
    EXPECT_EQ(engine->loudnessTarget().name, "Custom") << "no preset's name for other numbers";
    stepper("Tolerance").stepDown();
    EXPECT_EQ(preset().currentText(), QStringLiteral("EBU R128 (−23 LUFS)"));
    EXPECT_EQ(entries(preset()).size(), 4);
    // By hand to the numbers of another one.
    stepper("Target").setValue(-16.0);
    EXPECT_EQ(preset().currentText(), QStringLiteral("Podcast (−16 LUFS)"));
    EXPECT_EQ(engine->loudnessTarget(), LoudnessTarget::presets()[3]);
}

TEST_F(LoudnessSettingsViewTests, aTargetBeyondTheSteppersKeepsItsValueUntilItIsStepped) {
    engine->loudnessTarget.set(
        {.name = "Cinema", .targetLUFS = -50.0, .toleranceLU = 2.0, .truePeakCeilingDBTP = -1.0});
    EXPECT_EQ(preset().currentText(), "Custom");
    EXPECT_EQ(stepper("Target").value(), -40.0);
    stepper("Tolerance").stepUp();
    EXPECT_EQ(engine->loudnessTarget().targetLUFS, -50.0);
    stepper("Target").stepUp();
    EXPECT_EQ(engine->loudnessTarget().targetLUFS, -39.5);
}

TEST_F(LoudnessSettingsViewTests, threeHeadlinesAreOfferedAndAnotherOneWhileItIsSet) {
    auto& headline = named<QComboBox>(form, QStringLiteral("Headline value"));
    const QStringList three{"Momentary", "Short-Term", "Integrated"};
    EXPECT_EQ(entries(headline), three);
    EXPECT_EQ(headline.currentText(), "Short-Term");
    pick(headline, QStringLiteral("Integrated"));
    EXPECT_EQ(engine->loudnessReadout(), LoudnessMetric::integrated);
    engine->loudnessReadout.set(LoudnessMetric::range);
    EXPECT_EQ(headline.currentText(), "Loudness Range");
    pick(headline, QStringLiteral("Momentary"));
    EXPECT_EQ(entries(headline), three);
}

TEST_F(LoudnessSettingsViewTests, theMainInputMeasuresLoudness) {
    auto& toggle = button(form, QStringLiteral("Main input measures loudness"));
    EXPECT_FALSE(toggle.isChecked());
    toggle.click();
    EXPECT_TRUE(engine->mainInputMeasuresLoudness());
    engine->setMeasuresLoudness(false, TarvaneKit::UUID::main());
    EXPECT_FALSE(toggle.isChecked());
}

TEST_F(LoudnessSettingsViewTests, theHelpSaysWhatTheNumbersDo) {
    EXPECT_TRUE(labels(form).contains(QStringLiteral(
        "The readout and Level History turn green within the tolerance of the target, red above it "
        "and yellow below it. True peak turns red above the ceiling. The colors can be changed in "
        "the Traffic Light tab.")));
    EXPECT_TRUE(labels(form).contains(QStringLiteral(
        "Momentary is the last 400 ms, short-term the last 3 s, integrated the gated average since "
        "Start or the last Reset Integration. Level History graphs the same reading.")));
}

}  // namespace LoudnessSettingsViewTests
}  // namespace TarvaneApp
