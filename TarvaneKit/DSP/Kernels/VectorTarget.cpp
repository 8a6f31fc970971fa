#include "DSP/Kernels/VectorTarget.h"

#include <hwy/highway.h>
#include <hwy/targets.h>

namespace TarvaneKit {

namespace {

VectorTarget named(std::int64_t id) {
    return {id, hwy::TargetName(id)};
}

}  // namespace

std::vector<VectorTarget> availableVectorTargets() {
    // Highway's own list shrinks to the target chosen below.
    static const std::vector<std::int64_t> ids = hwy::SupportedAndGeneratedTargets();
    std::vector<VectorTarget> targets;
    for (const std::int64_t id : ids) {
        targets.push_back(named(id));
    }
    return targets;
}

VectorTarget vectorTargetInUse() {
    return named(hwy::SupportedAndGeneratedTargets().front());
}

void useVectorTarget(const VectorTarget& target) {
    availableVectorTargets();
    hwy::SetSupportedTargetsForTest(target.id);
    hwy::GetChosenTarget().Update(target.id);
}

void useBestVectorTarget() {
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace TarvaneKit
