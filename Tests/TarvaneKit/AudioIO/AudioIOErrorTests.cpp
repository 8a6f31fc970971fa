#include "AudioIO/AudioIOError.h"

#include <gtest/gtest.h>

namespace TarvaneKit {
namespace {

TEST(AudioIOError, describesItselfInTheWordsTheUserReads) {
    EXPECT_STREQ(AudioIOError::deviceEnumerationFailed(-112).what(),
                 "Failed to enumerate audio devices (OSStatus -112).");
    EXPECT_STREQ(AudioIOError::failedToSetDevice(-19).what(),
                 "Failed to select the audio input device (OSStatus -19).");
    EXPECT_STREQ(AudioIOError::engineStartFailed("no luck").what(),
                 "Failed to start the audio engine: no luck");
    EXPECT_STREQ(AudioIOError::systemAudioTapFailed(1970171760).what(),
                 "Couldn't capture the Mac's output (OSStatus 1970171760). Check System Settings > "
                 "Privacy & Security > Screen & System Audio Recording.");
    EXPECT_STREQ(AudioIOError::deviceHasNoInputChannels().what(),
                 "The selected device has no input channels.");
    EXPECT_STREQ(AudioIOError::noInputAvailable().what(), "No audio input device is available.");
    EXPECT_STREQ(AudioIOError::microphoneAccessDenied().what(),
                 "Tarvane isn't allowed to use the microphone. Open System Settings > Privacy & "
                 "Security > Microphone, turn on Tarvane, then relaunch the app.");
    EXPECT_STREQ(AudioIOError::systemAudioUnavailable().what(),
                 "Measuring the Mac's own output (System Output) needs macOS 14.2 or later.");
}

TEST(AudioSourceLoss, describesItselfInTheWordsTheUserReads) {
    EXPECT_EQ(description(AudioSourceLoss::deviceRemoved), "The device was disconnected.");
    EXPECT_EQ(description(AudioSourceLoss::serverLost), "The audio server stopped.");
    EXPECT_EQ(description(AudioSourceLoss::stalled), "The device delivers no audio.");
}

TEST(AudioIOError, carriesTheStatusOfTheFailingCall) {
    EXPECT_EQ(AudioIOError::failedToSetDevice(-19).status(), -19);
    EXPECT_FALSE(AudioIOError::noInputAvailable().status());
}

}  // namespace
}  // namespace TarvaneKit
