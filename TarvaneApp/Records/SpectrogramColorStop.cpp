#include "Records/SpectrogramColorStop.h"

namespace TarvaneApp {

namespace {

SpectrogramColorStop stop(double position, double red, double green, double blue) {
    SpectrogramColorStop stop;
    stop.position = position;
    stop.color = {red / 255.0, green / 255.0, blue / 255.0, 1.0};
    return stop;
}

}  // namespace

const std::vector<SpectrogramColorStop>& defaultSpectrogramColorStops() {
    static const std::vector<SpectrogramColorStop> stops{
        stop(0.0, 5, 5, 12),       stop(0.378, 70, 15, 65),    stop(0.535, 12, 26, 110),
        stop(0.655, 15, 114, 209), stop(0.756, 0, 183, 148),   stop(0.845, 136, 214, 42),
        stop(0.926, 255, 157, 0),  stop(0.963, 255, 105, 180), stop(1.0, 255, 255, 255),
    };
    return stops;
}

}  // namespace TarvaneApp
