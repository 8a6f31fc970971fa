// Storage that begins on a cache line, as transforms and vector code like it best.
#pragma once

#include <cstddef>
#include <new>
#include <vector>

namespace TarvaneKit {

template <class T>
class CacheLineAllocator {
  public:
    using value_type = T;
    static constexpr std::align_val_t alignment{64};

    CacheLineAllocator() = default;
    template <class U>
    explicit CacheLineAllocator(const CacheLineAllocator<U>&) {}

    T* allocate(std::size_t count) {
        return static_cast<T*>(::operator new(count * sizeof(T), alignment));
    }
    void deallocate(T* storage, std::size_t) { ::operator delete(storage, alignment); }

    bool operator==(const CacheLineAllocator&) const { return true; }
};

template <class T>
using AlignedVector = std::vector<T, CacheLineAllocator<T>>;

}  // namespace TarvaneKit
