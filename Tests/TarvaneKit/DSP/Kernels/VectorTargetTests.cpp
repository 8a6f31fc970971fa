#include "DSP/Kernels/VectorTarget.h"

#include <gtest/gtest.h>

namespace TarvaneKit {
namespace VectorTargetTests {

TEST(VectorTarget, theBestOneIsInUseUnlessAnotherIsChosen) {
    const auto targets = availableVectorTargets();
    ASSERT_FALSE(targets.empty());
    EXPECT_EQ(vectorTargetInUse().id, targets.front().id);
    useVectorTarget(targets.back());
    EXPECT_EQ(vectorTargetInUse().id, targets.back().id);
    EXPECT_EQ(availableVectorTargets().size(), targets.size());
    useBestVectorTarget();
    EXPECT_EQ(vectorTargetInUse().id, targets.front().id);
}

}  // namespace VectorTargetTests
}  // namespace TarvaneKit
