// Turns one spectrogram row per analysis into 60 rows a second, whatever the ticks do. The
// display scrolls by rows, so that its time axis hangs on this pace.
#pragma once

#include <vector>

namespace TarvaneApp {

class SpectrogramPace {
  public:
    static constexpr double rowsPerSecond = 60.0;

    /// The rows to append for `row`, which came `elapsedSeconds` after the one before it: none
    /// when ticks come too fast, two when they lag, the first of them halfway from the row before.
    /// At most one row is ever made up, so that a long stall is paid back one row a tick.
    std::vector<std::vector<float>> rows(std::vector<float> row, double elapsedSeconds);

    /// Forgets how far behind the display is. The row before stays.
    void forgetDebt() { debt_ = 0.0; }
    /// In rows; above 0 when too few were given.
    double debt() const { return debt_; }

  private:
    double debt_ = 0.0;
    std::vector<float> previousRow_;
};

}  // namespace TarvaneApp
