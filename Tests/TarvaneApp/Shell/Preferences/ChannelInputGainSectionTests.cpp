#include "Shell/Preferences/ChannelInputGainSection.h"

#include <gtest/gtest.h>

#include "LiveDisplays/LiveInputLevelMeterView.h"
#include "TarvaneApp/Shell/Preferences/AudioFormFixture.h"

namespace TarvaneApp {
namespace ChannelInputGainSectionTests {

using TarvaneKit::UUID;
using TarvaneTests::FakeControls;

constexpr std::uint32_t mic = 40;
constexpr std::uint32_t desk = 41;

class ChannelInputGainSectionTests : public TarvaneTests::AudioFormFixture {
  protected:
    void giveControls(std::uint32_t device, const std::optional<FakeControls>& controls) {
        audio.setControls(device, controls);
        engine->refreshDevices();
        settle();
    }
    static FakeControls gain(double gainDB, bool isShared = false) {
        FakeControls controls;
        controls.minDB = -12.0;
        controls.maxDB = 30.0;
        if (isShared) {
            controls.masterGainDB = gainDB;
        } else {
            controls.gainsDB = {{0, gainDB}};
        }
        return controls;
    }
};

constexpr const char* sharedNote =
    "This device has one input gain for all its inputs, so this also changes the other channels on "
    "it. SPL compensation follows on every calibrated channel.";

TEST_F(ChannelInputGainSectionTests, withoutAGainControlThereIsATextAndNoSlider) {
    const auto stage = addChannel("Stage", "desk", 0);
    engine->setDigitalSource(false, stage.id);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        EXPECT_TRUE(says(form, "Not adjustable in software for this device"));
        EXPECT_EQ(row(form, "Input gain"), nullptr);
        EXPECT_EQ(row(form, "Current volume"), nullptr);
    }
}

TEST_F(ChannelInputGainSectionTests, theGainIsSetWithinTheDevicesRange) {
    const auto stage = addChannel("Stage", "desk", 0);
    engine->setDigitalSource(false, stage.id);
    giveControls(mic, gain(6.0));
    giveControls(desk, gain(6.0));
    for (const auto& [id, device] : {std::pair(UUID::main(), mic), std::pair(stage.id, desk)}) {
        auto& form = unfolded(id);
        auto& found = slider(form, "Input gain");
        EXPECT_EQ(found.maximum() - found.minimum(), 42);  // steps of 1 dB from -12 to 30
        EXPECT_TRUE(says(form, "6.0 dB"));
        EXPECT_FALSE(says(form, "Not adjustable in software for this device"));
        found.setValue(found.value() + 3);
        EXPECT_EQ(audio.controls(device).gainsDB[0], 9.0);
        settle();
        EXPECT_TRUE(says(form, "9.0 dB"));
        EXPECT_EQ(button(form, "Max").toolTip(), QStringLiteral("Set to Maximum"));
        button(form, "Max").click();
        EXPECT_EQ(audio.controls(device).gainsDB[0], 30.0);
        settle();
        EXPECT_EQ(found.value(), found.maximum());
    }
}

TEST_F(ChannelInputGainSectionTests, aGainTurnedElsewhereIsFollowed) {
    giveControls(mic, gain(0.0));
    auto& form = section();
    audio.setControls(mic, gain(-7.0));
    settle();
    EXPECT_TRUE(says(form, "-7.0 dB"));
    // The device goes, and with it its control.
    audio.setControls(mic, std::nullopt);
    engine->refreshInputVolume();
    settle();
    EXPECT_TRUE(says(form, "Not adjustable in software for this device"));
}

TEST_F(ChannelInputGainSectionTests, aSharedGainIsSaid) {
    giveControls(mic, gain(0.0));
    EXPECT_FALSE(says(section(), sharedNote));
    giveControls(mic, gain(0.0, true));
    EXPECT_TRUE(says(section(), sharedNote));
}

TEST_F(ChannelInputGainSectionTests, theCompensationIsToldFromATwentiethOfADecibelOn) {
    giveControls(mic, gain(0.0));
    auto profile = engine->calibration();
    profile.reference.emplace();
    profile.reference->inputGainDB = 0.0;
    engine->calibration.set(profile);
    auto& form = section();
    EXPECT_EQ(row(form, "SPL compensation"), nullptr);
    audio.setControls(mic, gain(-0.04));
    settle();
    EXPECT_EQ(row(form, "SPL compensation"), nullptr);
    audio.setControls(mic, gain(-6.0));
    settle();
    EXPECT_EQ(reading(form, "SPL compensation"), QStringLiteral("+6.0 dB"));
    audio.setControls(mic, gain(2.5));
    settle();
    EXPECT_EQ(reading(form, "SPL compensation"), QStringLiteral("-2.5 dB"));
}

TEST_F(ChannelInputGainSectionTests, aReferenceWithoutARecordedGainIsWarnedOf) {
    const char* warning =
        "This reference calibration was made before gain was recorded, so gain changes aren't "
        "compensated. Recalibrate to enable it.";
    giveControls(mic, gain(0.0));
    EXPECT_FALSE(says(section(), warning));
    auto profile = engine->calibration();
    profile.reference.emplace();
    engine->calibration.set(profile);
    EXPECT_TRUE(says(section(), warning));
    EXPECT_EQ(row(section(), "SPL compensation"), nullptr);
}

TEST_F(ChannelInputGainSectionTests, aVolumeWithoutAGainIsAPercentage) {
    FakeControls controls;
    controls.volume = 0.25F;
    giveControls(mic, controls);
    auto& form = section();
    EXPECT_EQ(row(form, "Input gain"), nullptr);
    EXPECT_EQ(reading(form, "Current volume"),
              QStringLiteral("25%  (gain not reported — not compensated)"));
    slider(form, "Input volume").setValue(60);
    settle();
    EXPECT_FLOAT_EQ(*audio.controls(mic).volume, 0.6F);
    EXPECT_EQ(reading(form, "Current volume"),
              QStringLiteral("60%  (gain not reported — not compensated)"));
}

TEST_F(ChannelInputGainSectionTests, aRefusalIsToldBesideTheControlUntilItWorks) {
    const char* refusal = "Couldn't set input gain — this device may not support it in software.";
    FakeControls controls = gain(0.0);
    controls.refusesToBeSet = true;
    giveControls(mic, controls);
    auto& form = section();
    auto& found = slider(form, "Input gain");
    const int before = found.value();
    found.setValue(before + 5);
    settle();
    EXPECT_TRUE(says(form, refusal));
    EXPECT_EQ(engine->errorMessage(), refusal);
    EXPECT_EQ(found.value(), before);
    giveControls(mic, gain(0.0));
    found.setValue(before + 5);
    settle();
    EXPECT_FALSE(says(form, refusal));

    FakeControls volume;
    volume.volume = 0.5F;
    volume.refusesToBeSet = true;
    giveControls(mic, volume);
    slider(form, "Input volume").setValue(10);
    EXPECT_TRUE(says(form,
                     "Couldn't set input volume — this device may not support it in "
                     "software."));
}

TEST_F(ChannelInputGainSectionTests, theInputLevelIsLive) {
    auto* meter = section().findChild<LiveInputLevelMeterView*>();
    ASSERT_NE(meter, nullptr);
    EXPECT_EQ(meter->view().text(), QStringLiteral("Start metering to see the input level."));
    start();
    play(1000.0, 0.1, 0.2);
    EXPECT_EQ(meter->view().text(), QStringLiteral("-20.0"));
    section().header().click();
    EXPECT_FALSE(meter->isVisible());
}

}  // namespace ChannelInputGainSectionTests
}  // namespace TarvaneApp
