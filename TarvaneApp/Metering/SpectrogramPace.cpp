#include "Metering/SpectrogramPace.h"

#include <algorithm>
#include <utility>

namespace TarvaneApp {

namespace {

// Half a second of rows: a longer stall is not made up for.
constexpr double largestDebt = 30.0;
// A row and a half, so that ticks that jitter about 1/60 s give one row each.
constexpr double dueDebt = 1.5;

std::vector<float> halfway(const std::vector<float>& a, const std::vector<float>& b) {
    std::vector<float> middle(a.size());
    std::ranges::transform(a, b, middle.begin(), [](float x, float y) { return (x + y) * 0.5F; });
    return middle;
}

}  // namespace

std::vector<std::vector<float>> SpectrogramPace::rows(std::vector<float> row,
                                                      double elapsedSeconds) {
    const double due = std::max(elapsedSeconds, 0.0) * rowsPerSecond;
    debt_ = std::clamp(debt_ + due - 1.0, -largestDebt, largestDebt);

    std::vector<std::vector<float>> given;
    if (debt_ <= -dueDebt) {
        debt_ += 1.0;
        previousRow_ = std::move(row);
        return given;
    }
    if (debt_ >= dueDebt && previousRow_.size() == row.size()) {
        debt_ -= 1.0;
        given.push_back(halfway(previousRow_, row));
    }
    previousRow_ = row;
    given.push_back(std::move(row));
    return given;
}

}  // namespace TarvaneApp
