#include "Metering/LevelReadings.h"

#include <cmath>
#include <utility>

#include "Core/Contract.h"

namespace TarvaneApp {

namespace {

// One and a half display ticks: a display that keeps up is never that late, and a history bucket
// of a tenth of a second has several readings all the same.
constexpr double lateSeconds = 0.025;

constexpr double secondsWithoutAllocation = 5.0;
// A window that answers nothing for so long has lost what came before.
constexpr double mostSeconds = 600.0;

std::size_t readingsIn(double seconds) {
    return static_cast<std::size_t>(std::ceil(seconds / lateSeconds));
}

}  // namespace

void LevelReadings::Taken::clear() {
    readings.clear();
    values.clear();
    holes.clear();
    frame = 0;
    unreadFrames = 0;
}

LevelReadings::LevelReadings(std::size_t valueCount, double sampleRate)
    : valueCount_(valueCount),
      lateFrames_(static_cast<std::int64_t>(std::ceil(sampleRate * lateSeconds))),
      mostReadings_(readingsIn(mostSeconds)) {
    waiting_.readings.reserve(readingsIn(secondsWithoutAllocation));
    waiting_.values.reserve(readingsIn(secondsWithoutAllocation) * valueCount);
}

bool LevelReadings::advance(int frameCount) {
    const std::lock_guard hold(lock_);
    waiting_.frame += frameCount;
    waiting_.unreadFrames += frameCount;
    return waiting_.unreadFrames >= lateFrames_;
}

bool LevelReadings::hasUnread() const {
    const std::lock_guard hold(lock_);
    return waiting_.unreadFrames > 0;
}

void LevelReadings::put(std::span<const double> values) {
    TARVANE_PRECONDITION(values.size() == valueCount_);
    const std::lock_guard hold(lock_);
    const std::int64_t frameCount = std::exchange(waiting_.unreadFrames, 0);
    if (frameCount == 0 || waiting_.readings.size() >= mostReadings_) {
        return;  // the display has just read it itself, or nobody does any more
    }
    waiting_.readings.push_back({.endFrame = waiting_.frame,
                                 .frameCount = frameCount,
                                 .firstValue = waiting_.values.size()});
    waiting_.values.insert(waiting_.values.end(), values.begin(), values.end());
}

void LevelReadings::skip(std::int64_t frameCount) {
    const std::lock_guard hold(lock_);
    waiting_.frame += frameCount;
    waiting_.unreadFrames = 0;
}

void LevelReadings::noteHole(std::int64_t frameCount) {
    const std::lock_guard hold(lock_);
    waiting_.frame += frameCount;
    waiting_.unreadFrames = 0;
    waiting_.holes.push_back({.endFrame = waiting_.frame, .frameCount = frameCount});
}

// Copied, not swapped: the capture side keeps the memory that it was given.
void LevelReadings::take(Taken& taken) {
    const std::lock_guard hold(lock_);
    taken = waiting_;
    waiting_.readings.clear();
    waiting_.values.clear();
    waiting_.holes.clear();
    waiting_.unreadFrames = 0;
}

}  // namespace TarvaneApp
