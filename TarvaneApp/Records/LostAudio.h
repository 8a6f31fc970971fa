// Holes in a session's audio: what the server didn't deliver, or the program was too late for.
#pragma once

#include <span>

namespace TarvaneApp {

struct LostAudio {
    double elapsed = 0.0;  ///< seconds since the start of the session, where audio goes on
    double seconds = 0.0;
    int count = 1;  ///< of holes told together

    bool operator==(const LostAudio&) const = default;
};

/// All of a session.
struct LostAudioTotal {
    int count = 0;
    double seconds = 0.0;
    double lastElapsed = 0.0;

    static LostAudioTotal of(std::span<const LostAudio> holes) {
        LostAudioTotal total;
        for (const LostAudio& hole : holes) {
            total.count += hole.count;
            total.seconds += hole.seconds;
            total.lastElapsed = hole.elapsed;
        }
        return total;
    }

    bool operator==(const LostAudioTotal&) const = default;
};

}  // namespace TarvaneApp
