#include "Core/Contract.h"

#include <cstdio>
#include <cstdlib>

namespace TarvaneKit {

void contractViolation(const char* condition, const char* file, int line) noexcept {
    std::fprintf(stderr, "%s:%d: contract violated: %s\n", file, line, condition);
    std::abort();
}

}  // namespace TarvaneKit
