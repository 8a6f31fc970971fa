#pragma once

// TARVANE_SANITIZED: whether the build is watched by a sanitizer, which g++ and clang++ say each in
// its own way.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TARVANE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TARVANE_SANITIZED 1
#endif
#endif
