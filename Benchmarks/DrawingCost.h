// The unit in which the cost of drawing is given: milliseconds of process CPU time per picture. At
// the end of a run a table sets each fast drawing beside the plain one of the same run, which is
// the claim, and beside the figure to beat, measured on another machine, which is a guide.
#pragma once

#include <benchmark/benchmark.h>

#include <QImage>
#include <QSizeF>
#include <cstdint>
#include <string>
#include <vector>

namespace TarvaneBenchmarks {

struct DrawingCase {
    std::int64_t width;
    std::int64_t height;
    std::int64_t scale;
    std::int64_t count;  ///< of what is drawn: bars, rows, seconds
    double msToBeat;     ///< 0: there is no such figure
};

struct DrawingComparison {
    std::string name;
    void (*fast)(benchmark::State&);
    void (*plain)(benchmark::State&);
    std::vector<DrawingCase> cases;
};

/// Registers both drawings for all cases, and their rows in the table.
void compareDrawing(const DrawingComparison& comparison);

inline QSizeF drawingSize(const benchmark::State& state) {
    return {static_cast<double>(state.range(0)), static_cast<double>(state.range(1))};
}
inline double drawingScale(const benchmark::State& state) {
    return static_cast<double>(state.range(2));
}
/// A picture as a window's backing store is one.
inline QImage drawingTarget(const benchmark::State& state) {
    QImage image((drawingSize(state) * drawingScale(state)).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(drawingScale(state));
    return image;
}

}  // namespace TarvaneBenchmarks
