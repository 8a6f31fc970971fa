// A channel's levels on their way to the level history: taken on the capture side whenever the
// display is late, so that a busy window loses none, and placed by the samples they stand for.
//
// The main thread takes a reading at each of its ticks. As long as it does, the capture thread
// takes none. Times are counts of the source's frames, lost ones included, which the taker puts
// against its own clock. One lock, held for copying alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

namespace TarvaneApp {

class LevelReadings {
  public:
    struct Reading {
        std::int64_t endFrame = 0;    ///< where the audio ends whose level it is
        std::int64_t frameCount = 0;  ///< how long that is, up to the reading before
        std::size_t firstValue = 0;   ///< in `Taken::values`
    };
    /// Frames that never arrived.
    struct Hole {
        std::int64_t endFrame = 0;
        std::int64_t frameCount = 0;
    };
    /// What has come up since the last time, oldest first.
    struct Taken {
        std::vector<Reading> readings;
        std::vector<double> values;  ///< `valueCount` for each reading
        std::vector<Hole> holes;
        std::int64_t frame = 0;         ///< where the channel is now
        std::int64_t unreadFrames = 0;  ///< behind the last reading

        /// Keeps the memory.
        void clear();
        std::span<const double> valuesOf(const Reading& reading, std::size_t valueCount) const {
            return std::span(values).subspan(reading.firstValue, valueCount);
        }
    };

    /// Memory for the first seconds of a stall is taken here.
    LevelReadings(std::size_t valueCount, double sampleRate);

    // Capture thread.

    /// Whether the display is so late that a reading should be put in now.
    bool advance(int frameCount);
    /// Whether there is audio that no reading stands for yet.
    bool hasUnread() const;
    /// A reading of all that isn't read yet. Allocates once a stall is long.
    void put(std::span<const double> values);
    /// Frames that were heard by no meter. They end what a reading stands for: call `put` first.
    void skip(std::int64_t frameCount);
    /// The same, of audio that never arrived.
    void noteHole(std::int64_t frameCount);

    /// Main thread: takes all, and counts the rest as read.
    void take(Taken& taken);

  private:
    const std::size_t valueCount_;
    const std::int64_t lateFrames_;
    const std::size_t mostReadings_;

    mutable std::mutex lock_;
    Taken waiting_;
};

}  // namespace TarvaneApp
