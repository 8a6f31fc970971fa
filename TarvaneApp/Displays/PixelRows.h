// A stretch of a picture's rows, in device pixels.
#pragma once

namespace TarvaneApp {

struct PixelRows {
    int first = 0;
    int end = 0;

    bool isEmpty() const { return first >= end; }
    bool contains(int row) const { return first <= row && row < end; }
    bool operator==(const PixelRows&) const = default;
};

}  // namespace TarvaneApp
