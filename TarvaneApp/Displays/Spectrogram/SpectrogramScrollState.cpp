#include "Displays/Spectrogram/SpectrogramScrollState.h"

#include <algorithm>
#include <cmath>

namespace TarvaneApp {

void SpectrogramScrollState::drag(double translationY, double height, int visibleRows,
                                  int historyRows) {
    if (!isDragging) {
        baseOffset = rowOffset;
        isDragging = true;
    }
    const double delta = std::round(translationY * visibleRows / std::max(height, 1.0));
    const int furthest = std::max(historyRows - visibleRows, 0);
    rowOffset =
        static_cast<int>(std::clamp(baseOffset + delta, 0.0, static_cast<double>(furthest)));
}

void SpectrogramScrollState::resume() {
    rowOffset = 0;
    isDragging = false;
}

}  // namespace TarvaneApp
