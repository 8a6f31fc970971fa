#include "Support/RealtimeGuard.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "Core/RealtimeScope.h"
#include "Support/Sanitized.h"

namespace {

constinit std::atomic<std::int64_t> allocationCount = 0;
constinit std::atomic<std::int64_t> releaseCount = 0;
constinit std::atomic<std::int64_t> lockCount = 0;

void count(std::atomic<std::int64_t>& counter) {
    if (TarvaneKit::RealtimeScope::depth() > 0) {
        counter.fetch_add(1, std::memory_order_relaxed);
    }
}

}  // namespace

#ifdef TARVANE_SANITIZED

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*mallocHook)(const volatile void*,
                                                                            std::size_t),
                                                         void (*freeHook)(const volatile void*));

namespace {

void onMalloc(const volatile void*, std::size_t) {
    count(allocationCount);
}
void onFree(const volatile void*) {
    count(releaseCount);
}
[[maybe_unused]] const int installed = __sanitizer_install_malloc_and_free_hooks(onMalloc, onFree);

}  // namespace

#else

#define TARVANE_INTERPOSE extern "C" __attribute__((visibility("default")))

// glibc's own names for what is overridden here.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t number, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
extern "C" void* __libc_memalign(std::size_t alignment, std::size_t size);
extern "C" void __libc_free(void* memory);

TARVANE_INTERPOSE void* malloc(std::size_t size) {
    count(allocationCount);
    return __libc_malloc(size);
}

TARVANE_INTERPOSE void* calloc(std::size_t number, std::size_t size) {
    count(allocationCount);
    return __libc_calloc(number, size);
}

TARVANE_INTERPOSE void* realloc(void* memory, std::size_t size) {
    count(allocationCount);
    return __libc_realloc(memory, size);
}

TARVANE_INTERPOSE void* memalign(std::size_t alignment, std::size_t size) {
    count(allocationCount);
    return __libc_memalign(alignment, size);
}

TARVANE_INTERPOSE void* aligned_alloc(std::size_t alignment, std::size_t size) {
    count(allocationCount);
    return __libc_memalign(alignment, size);
}

TARVANE_INTERPOSE int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    count(allocationCount);
    void* result = __libc_memalign(alignment, size);
    if (result == nullptr) {
        return ENOMEM;
    }
    *memory = result;
    return 0;
}

TARVANE_INTERPOSE void free(void* memory) {
    if (memory != nullptr) {
        count(releaseCount);
    }
    __libc_free(memory);
}

namespace {

// The C library's function of that name and, where there are several, of the present version.
template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

template <typename Object>
int locked(std::atomic<int (*)(Object*)>& real, const char* name, Object* object) {
    count(lockCount);
    auto function = real.load(std::memory_order_relaxed);
    if (function == nullptr) {
        function = next<int (*)(Object*)>(name);
        real.store(function, std::memory_order_relaxed);
    }
    return function(object);
}

}  // namespace

TARVANE_INTERPOSE int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static constinit std::atomic<int (*)(pthread_mutex_t*)> real = nullptr;
    return locked(real, "pthread_mutex_lock", mutex);
}

TARVANE_INTERPOSE int pthread_rwlock_rdlock(pthread_rwlock_t* lock) {
    static constinit std::atomic<int (*)(pthread_rwlock_t*)> real = nullptr;
    return locked(real, "pthread_rwlock_rdlock", lock);
}

TARVANE_INTERPOSE int pthread_rwlock_wrlock(pthread_rwlock_t* lock) {
    static constinit std::atomic<int (*)(pthread_rwlock_t*)> real = nullptr;
    return locked(real, "pthread_rwlock_wrlock", lock);
}

TARVANE_INTERPOSE int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    static constinit std::atomic<int (*)(pthread_cond_t*, pthread_mutex_t*)> real = nullptr;
    count(lockCount);
    auto function = real.load(std::memory_order_relaxed);
    if (function == nullptr) {
        function = next<int (*)(pthread_cond_t*, pthread_mutex_t*)>("pthread_cond_wait");
        real.store(function, std::memory_order_relaxed);
    }
    return function(condition, mutex);
}

#endif

namespace TarvaneTests {

RealtimeGuard::Counts RealtimeGuard::counts() {
    return {allocationCount.load(), releaseCount.load(), lockCount.load()};
}

bool RealtimeGuard::countsLocks() {
#ifdef TARVANE_SANITIZED
    return false;
#else
    return true;
#endif
}

}  // namespace TarvaneTests
