#include "AudioIO/AudioIOError.h"

#include <gtest/gtest.h>

namespace TarvaneKit {
namespace AudioIOErrorTests {

TEST(AudioIOError, describesItselfInTheWordsTheUserReads) {
    EXPECT_STREQ(AudioIOError::deviceEnumerationFailed(-112).what(),
                 "Failed to enumerate audio devices (error -112).");
    EXPECT_STREQ(AudioIOError::failedToSetDevice(-19).what(),
                 "Failed to select the audio input device (error -19).");
    EXPECT_STREQ(AudioIOError::engineStartFailed("no luck").what(),
                 "Failed to start the audio engine: no luck");
    EXPECT_STREQ(
        AudioIOError::systemAudioTapFailed(-32).what(),
        "Couldn't capture the computer's output (error -32). Check that the audio server is "
        "running and that an output device is selected in the system's sound settings.");
    EXPECT_STREQ(AudioIOError::deviceHasNoInputChannels().what(),
                 "The selected device has no input channels.");
    EXPECT_STREQ(AudioIOError::noInputAvailable().what(), "No audio input device is available.");
    EXPECT_STREQ(AudioIOError::microphoneAccessDenied().what(),
                 "Tarvane isn't allowed to use the microphone. Open the system's privacy settings, "
                 "turn on the microphone for Tarvane, then relaunch the app.");
    EXPECT_STREQ(AudioIOError::systemAudioUnavailable().what(),
                 "Measuring the computer's own output (System Output) needs PipeWire 0.3.65 or "
                 "later.");
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

}  // namespace AudioIOErrorTests
}  // namespace TarvaneKit
