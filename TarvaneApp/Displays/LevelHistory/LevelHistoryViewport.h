// Which stretch of the session a level history shows, and the gestures that change it: drag to
// pan, wheel and pinch to zoom. Times are seconds since the start of the session. One per panel;
// main thread.
#pragma once

#include <optional>

#include "Records/LevelHistoryZoom.h"

namespace TarvaneApp {

/// The seconds that a preset shows; absent for the whole session.
std::optional<double> windowSeconds(LevelHistoryZoom zoom);

class LevelHistoryViewport {
  public:
    struct Range {
        double from = 0.0;
        double to = 0.0;

        double span() const { return to - from; }
        bool operator==(const Range&) const = default;
    };
    struct Custom {
        double span = 0.0;
        /// Absent: the range follows the live edge.
        std::optional<double> end;

        bool operator==(const Custom&) const = default;
    };
    /// The session's length and its preset, which give the range until the user takes over.
    struct Session {
        double duration = 0.0;
        std::optional<double> presetWindow;
    };

    struct Scroll {
        double deltaX = 0.0;
        double deltaY = 0.0;
        bool isPrecise = false;  ///< in pixels, as of a touchpad; else in notches of a wheel
    };

    static constexpr double shortestSpan = 10.0;

    // --- its state

    /// Absent while the preset applies.
    std::optional<Custom> custom;
    /// The range when the drag began.
    std::optional<Range> dragStartRange;

    // --- operations

    Range range(const Session& session) const;

    /// Shows `span` seconds from `from` on, as far as the session goes. A range that ends close
    /// to the live edge follows it. Returns false for the whole session: the user's own range is
    /// then gone.
    bool show(double from, double span, double duration);

    /// The pointer is that far to the right of where the drag began, on a plot of that width.
    void pan(double translationX, double plotWidth, const Session& session);
    void endPan() { dragStartRange.reset(); }

    /// Shows `factor` times as much, and keeps the moment at that fraction of the plot in its
    /// place. Returns false for the whole session.
    bool zoom(double factor, double atFraction, const Session& session);

    /// Pans if the movement is mostly sideways, else zooms.
    bool scroll(const Scroll& scroll, double atFraction, double plotWidth, const Session& session);

    /// By a pinch; 0 changes nothing.
    bool magnify(double magnification, double atFraction, const Session& session);

    /// Shows up to a minute around a moment.
    void showMoment(double elapsed, const Session& session);

    bool operator==(const LevelHistoryViewport&) const = default;
};

}  // namespace TarvaneApp
