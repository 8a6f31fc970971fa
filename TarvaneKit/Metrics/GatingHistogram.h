// The blocks of a measurement of any length in fixed memory: how many fell into each tenth of a
// loudness unit between -70 and +10 LUFS, and their energy. A gate's position is thus rounded to
// the bin in which it falls; the energies above it are exact.
// ITU-R BS.1770-4, annex 1 (gating); EBU Tech 3342 (percentiles).
// Not thread-safe: the meter's lock covers every call.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace TarvaneKit {

struct GatingHistogram {
    static constexpr int binCount = 800;
    static constexpr double lowestLoudness = -70.0;  ///< LUFS; the absolute gate
    static constexpr double binWidth = 0.1;          ///< LU

    std::array<std::int64_t, binCount> counts{};
    std::array<double, binCount> energies{};  ///< summed mean squares
    // The bins outside hold nothing. A programme fills a tenth or two of them, and the rest needn't
    // come into the cache ten times a second.
    int usedBegin = binCount;
    int usedEnd = 0;

    /// Bin i begins at -70 + 0.1 i LUFS; beyond either end it is the end's bin, the lowest one
    /// for a NaN.
    static int bin(double loudness);

    void add(double loudness, double energy);
    /// Of the blocks from that bin on, `binCount` being none; empty without blocks.
    std::optional<double> meanEnergy(int fromBin) const;
    /// By nearest rank, as the centre of its bin, in LUFS; empty without blocks from that bin on.
    std::optional<double> percentileLoudness(double percent, int fromBin) const;

  private:
    /// Those from that bin on which may hold something.
    template <class T>
    std::span<const T> used(const std::array<T, binCount>& bins, int fromBin) const;
};

}  // namespace TarvaneKit
