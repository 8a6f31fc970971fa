// Which vector instruction set the kernels run on. The best that the processor has is chosen at
// the first use; tests and benchmarks choose others to compare them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace TarvaneKit {

struct VectorTarget {
    std::int64_t id = 0;
    std::string name;  ///< as Highway names it: "AVX3", "AVX2", "SSE4", "EMU128", ...
};

/// Best first; those that both the build and the processor have.
std::vector<VectorTarget> availableVectorTargets();

VectorTarget vectorTargetInUse();

/// For the whole process; no kernel may be running.
void useVectorTarget(const VectorTarget& target);
void useBestVectorTarget();

}  // namespace TarvaneKit
