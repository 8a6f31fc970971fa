// Rows of a spectrogram wherever they are kept: a view of any container of rows, oldest first,
// that costs nothing to pass on. Valid as long as the container is unchanged.
#pragma once

#include <cstddef>
#include <span>

#include "Core/Contract.h"

namespace TarvaneApp {

class SpectrogramRows {
  public:
    SpectrogramRows() = default;

    /// Anything with `size()` and `[]` whose elements are rows of floats.
    template <class Container>
    explicit SpectrogramRows(const Container& rows)
        : rows_(&rows), row_(&rowOf<Container>), end_(static_cast<int>(rows.size())) {}

    template <class Container>
    explicit SpectrogramRows(const Container&&) = delete;

    int count() const { return end_ - first_; }

    std::span<const float> operator[](int index) const {
        TARVANE_PRECONDITION(index >= 0 && index < count());
        const int row = first_ + index;
        return row_(rows_, static_cast<std::size_t>(row));
    }

    /// From `first` up to but not including `end`.
    SpectrogramRows slice(int first, int end) const {
        TARVANE_PRECONDITION(0 <= first && first <= end && end <= count());
        SpectrogramRows part = *this;
        part.end_ = first_ + end;
        part.first_ = first_ + first;
        return part;
    }

  private:
    template <class Container>
    static std::span<const float> rowOf(const void* rows, std::size_t index) {
        return (*static_cast<const Container*>(rows))[index];
    }

    const void* rows_ = nullptr;
    std::span<const float> (*row_)(const void*, std::size_t) = nullptr;
    int first_ = 0;
    int end_ = 0;
};

}  // namespace TarvaneApp
