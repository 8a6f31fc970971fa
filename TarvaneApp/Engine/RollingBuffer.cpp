#include "RollingBuffer.h"

#include <algorithm>

#include "Core/Contract.h"

namespace TarvaneApp {

void RollingBuffer::allocate() {
    ring_.assign(limit, 0.0F);
    end_ = 0;
    count_ = 0;
}

void RollingBuffer::append(std::span<const float> block) {
    const auto newest = block.last(std::min<std::size_t>(block.size(), limit));
    const auto untilWrap = std::min(newest.size(), static_cast<std::size_t>(limit - end_));
    std::ranges::copy(newest.first(untilWrap), ring_.begin() + end_);
    std::ranges::copy(newest.subspan(untilWrap), ring_.begin());
    end_ = (end_ + static_cast<int>(newest.size())) % limit;
    const auto wanted = static_cast<std::size_t>(count_) + block.size();
    count_ = wanted > static_cast<std::size_t>(limit) ? remainder : static_cast<int>(wanted);
}

void RollingBuffer::copyNewest(std::span<float> into) const {
    const int wanted = static_cast<int>(into.size());
    TARVANE_PRECONDITION(wanted <= count_);
    const int begin = (end_ - wanted + limit) % limit;
    const int untilWrap = std::min(wanted, limit - begin);
    std::copy_n(ring_.begin() + begin, untilWrap, into.begin());
    std::copy_n(ring_.begin(), wanted - untilWrap, into.begin() + untilWrap);
}

}  // namespace TarvaneApp
