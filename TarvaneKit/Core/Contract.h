// Contract checks that stay on in release builds.
//
// A violated precondition means that the program itself is wrong, never that
// the user or a device is. It stops the process with the condition's text
// rather than let a measurement go on with a wrong number.
#pragma once

namespace TarvaneKit {

/// Prints the condition and its place to standard error and aborts.
[[noreturn]] void contractViolation(const char* condition, const char* file, int line) noexcept;

}  // namespace TarvaneKit

#define TARVANE_PRECONDITION(condition) \
    ((condition) ? static_cast<void>(0) \
                 : ::TarvaneKit::contractViolation(#condition, __FILE__, __LINE__))
