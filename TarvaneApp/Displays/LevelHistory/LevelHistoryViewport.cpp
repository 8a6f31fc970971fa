#include "Displays/LevelHistory/LevelHistoryViewport.h"

#include <algorithm>
#include <cmath>

namespace TarvaneApp {

namespace {

constexpr double wholeSessionTolerance = 0.000001;
constexpr double liveEdgeShare = 0.02;  // of the span
constexpr double zoomPerNotch = 0.87;
constexpr double pixelsPerNotch = 30.0;
constexpr double panPixelsPerNotch = 10.0;
constexpr double momentSpan = 60.0;

}  // namespace

std::optional<double> windowSeconds(LevelHistoryZoom zoom) {
    switch (zoom) {
        case LevelHistoryZoom::last1Min:
            return 60.0;
        case LevelHistoryZoom::last5Min:
            return 300.0;
        case LevelHistoryZoom::last15Min:
            return 900.0;
        case LevelHistoryZoom::session:
            break;
    }
    return std::nullopt;
}

LevelHistoryViewport::Range LevelHistoryViewport::range(const Session& session) const {
    if (custom) {
        const double end = std::min(custom->end.value_or(session.duration), session.duration);
        const double to = std::max(end, custom->span);
        return {to - custom->span, to};
    }
    if (session.presetWindow) {
        const double to = std::max(session.duration, *session.presetWindow);
        return {to - *session.presetWindow, to};
    }
    return {0.0, std::max(session.duration, shortestSpan)};
}

bool LevelHistoryViewport::show(double from, double requestedSpan, double duration) {
    const double limit = std::max(duration, shortestSpan);
    const double span = std::min(std::max(requestedSpan, shortestSpan), limit);
    if (span >= limit - wholeSessionTolerance) {
        custom.reset();
        return false;
    }
    const double end = span + std::clamp(from, 0.0, limit - span);
    custom = {.span = span, .end = std::nullopt};
    if (end < limit - liveEdgeShare * span) {
        custom->end = end;
    }
    return true;
}

void LevelHistoryViewport::pan(double translationX, double plotWidth, const Session& session) {
    if (!dragStartRange) {
        dragStartRange = range(session);
    }
    const double span = dragStartRange->span();
    show(dragStartRange->from - translationX / plotWidth * span, span, session.duration);
}

bool LevelHistoryViewport::zoom(double factor, double atFraction, const Session& session) {
    const Range shown = range(session);
    const double fraction = std::clamp(atFraction, 0.0, 1.0);
    const double span = factor * shown.span();
    return show(shown.from + fraction * (shown.span() - span), span, session.duration);
}

bool LevelHistoryViewport::scroll(const Scroll& scroll, double atFraction, double plotWidth,
                                  const Session& session) {
    if (std::abs(scroll.deltaY) < std::abs(scroll.deltaX)) {
        const Range shown = range(session);
        const double step = scroll.isPrecise ? scroll.deltaX : scroll.deltaX * panPixelsPerNotch;
        show(shown.from - shown.span() * step / plotWidth, shown.span(), session.duration);
        return true;
    }
    if (scroll.deltaY == 0.0) {
        return true;
    }
    const double notches = scroll.isPrecise ? scroll.deltaY / pixelsPerNotch : scroll.deltaY;
    return zoom(std::pow(zoomPerNotch, notches), atFraction, session);
}

bool LevelHistoryViewport::magnify(double magnification, double atFraction,
                                   const Session& session) {
    return zoom(1.0 / (magnification + 1.0), atFraction, session);
}

void LevelHistoryViewport::showMoment(double elapsed, const Session& session) {
    const double span = std::min(range(session).span(), momentSpan);
    show(elapsed - span / 2.0, span, session.duration);
}

}  // namespace TarvaneApp
