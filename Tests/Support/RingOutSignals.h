// What a ring-out detector hears: simulated rooms whose gain creeps past the point of feedback,
// and music-like material that must not be taken for it. 48 kHz, full scale 1.
#pragma once

#include <string>
#include <vector>

namespace TarvaneKit::Testing {

/// A resonance of the way from loudspeaker to microphone.
struct RoomMode {
    double frequencyHz;
    double q;
    double gainDB;
};

/// Microphone, amplifier, loudspeaker, room: a delay, a band-pass from 60 Hz to 14 kHz and
/// resonances in a loop that saturates at full scale, excited by noise. The loop gain at its
/// strongest frequency starts at `startGainDB` and moves by `creepDBPerSecond`.
struct FeedbackRoom {
    std::vector<RoomMode> modes;
    double delaySeconds = 0.012;
    double startGainDB = -1.5;
    double creepDBPerSecond = 0.25;
    double noiseDB = -75.0;
    double durationSeconds = 20.0;
};

struct FeedbackRun {
    std::vector<float> signal;
    /// Where the loop's gain is largest among the frequencies at which it turns by whole cycles.
    double ringFrequencyHz = 0.0;
    /// When the gain there passes 1; negative if it doesn't.
    double unstableAtSeconds = -1.0;
    /// The first time that the signal reaches half of full scale; negative if it doesn't.
    double howlAtSeconds = -1.0;
};

FeedbackRun simulate(const FeedbackRoom& room);

/// One mode, out of the middle of a real room's many.
FeedbackRoom roomWithModeAt(double frequencyHz);

struct Material {
    std::string name;
    std::vector<float> signal;
    /// A ring is recognised by growth, steadiness and the lack of a harmonic family. Music that
    /// shows all three is an alert by these rules: here stands why. Empty for material that
    /// doesn't.
    std::string whyItRings = {};
};

std::vector<Material> musicLikeMaterial();

}  // namespace TarvaneKit::Testing
