// Denormal numbers off, for the length of a scope and the calling thread alone. A filter fading
// into silence would otherwise spend a hundred times its time on numbers nobody can read.
// x86: FTZ and DAZ of MXCSR; ARM64: FZ of FPCR; nothing on other processors.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace TarvaneKit {

class FlushDenormals {
  public:
    FlushDenormals() : before_(controlWord()) { setControlWord(before_ | flushBits); }
    ~FlushDenormals() { setControlWord(before_); }
    FlushDenormals(const FlushDenormals&) = delete;
    FlushDenormals& operator=(const FlushDenormals&) = delete;

  private:
#if defined(__SSE2__)
    using ControlWord = unsigned int;
    static constexpr ControlWord flushBits = 0x8040;  // FTZ, bit 15; DAZ, bit 6
    static ControlWord controlWord() {
        return _mm_getcsr();
    }
    static void setControlWord(ControlWord word) {
        _mm_setcsr(word);
    }
#elif defined(__aarch64__)
    using ControlWord = std::uint64_t;
    static constexpr ControlWord flushBits = std::uint64_t{1} << 24;  // FZ
    static ControlWord controlWord() {
        ControlWord word = 0;
        asm volatile("mrs %0, fpcr" : "=r"(word));
        return word;
    }
    static void setControlWord(ControlWord word) {
        asm volatile("msr fpcr, %0" : : "r"(word));
    }
#else
    using ControlWord = int;
    static constexpr ControlWord flushBits = 0;
    static ControlWord controlWord() {
        return 0;
    }
    static void setControlWord(ControlWord) {}
#endif

    ControlWord before_;
};

}  // namespace TarvaneKit
