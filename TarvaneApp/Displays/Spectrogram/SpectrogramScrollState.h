// How far a spectrogram is scrolled back into its history, and the drag that does it. Offsets
// count rows from the newest and are not moved along as rows arrive: a history that is looked at
// while metering runs creeps on with the live rows.
#pragma once

namespace TarvaneApp {

struct SpectrogramScrollState {
    int rowOffset = 0;   ///< 0 is live
    int baseOffset = 0;  ///< where the drag began
    bool isDragging = false;

    // --- operations

    /// The pointer is `translationY` pixels under the place where the drag began, on a plot of
    /// that height which shows `visibleRows` of `historyRows`. Down reveals older rows.
    void drag(double translationY, double height, int visibleRows, int historyRows);
    void endDrag() { isDragging = false; }
    /// Back to live.
    void resume();

    bool operator==(const SpectrogramScrollState&) const = default;
};

}  // namespace TarvaneApp
