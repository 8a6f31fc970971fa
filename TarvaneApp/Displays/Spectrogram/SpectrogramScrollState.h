// How far a spectrogram is scrolled back into its history, and the drag that does it. Offsets
// count rows from the newest and stay as rows arrive: history that is looked at while metering
// runs moves on with the live rows.
#pragma once

namespace TarvaneApp {

struct SpectrogramScrollState {
    int rowOffset = 0;   ///< 0 is live
    int baseOffset = 0;  ///< where the drag began
    bool isDragging = false;

    // --- operations

    /// The pointer is `translationY` pixels below where the drag began, on a plot of that height
    /// which shows `visibleRows` of `historyRows`. Down reveals older rows.
    void drag(double translationY, double height, int visibleRows, int historyRows);
    void endDrag() { isDragging = false; }
    /// Back to live.
    void resume();

    bool operator==(const SpectrogramScrollState&) const = default;
};

}  // namespace TarvaneApp
