#include "Metering/RollingBuffer.h"

#include "Core/Contract.h"

namespace TarvaneApp {

namespace {

// Where the samples stay while the analysis keeps up: room for a window of 8192, and then for
// twenty ticks until they are moved back.
constexpr int usualRoom = 24576;

}  // namespace

void RollingBuffer::allocate() {
    storage_ = std::make_unique_for_overwrite<float[]>(limit);
    clear();
}

void RollingBuffer::append(std::span<const float> block) {
    if (block.size() > static_cast<std::size_t>(limit - count())) {
        block = block.last(std::min<std::size_t>(block.size(), remainder));
        keepNewest(remainder - static_cast<int>(block.size()));
    }
    const int added = static_cast<int>(block.size());
    const int room = count() + added <= usualRoom ? usualRoom : limit;
    if (end_ + added > room) {
        std::copy(storage_.get() + begin_, storage_.get() + end_, storage_.get());
        end_ = count();
        begin_ = 0;
    }
    std::ranges::copy(block, storage_.get() + end_);
    end_ += added;
}

void RollingBuffer::copyNewest(std::span<float> into) const {
    const int wanted = static_cast<int>(into.size());
    TARVANE_PRECONDITION(wanted <= count());
    std::copy(storage_.get() + end_ - wanted, storage_.get() + end_, into.begin());
}

}  // namespace TarvaneApp
