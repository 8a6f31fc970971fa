// A fixture that runs its tests on every instruction set of this build and machine.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "DSP/Kernels/VectorTarget.h"

namespace TarvaneKit {

inline void PrintTo(const VectorTarget& target, std::ostream* out) {
    *out << target.name;
}

namespace Testing {

class EachVectorTarget : public testing::TestWithParam<VectorTarget> {
  protected:
    void SetUp() override { useVectorTarget(GetParam()); }
    void TearDown() override { useBestVectorTarget(); }
};

}  // namespace Testing
}  // namespace TarvaneKit

#define TARVANE_ON_EACH_VECTOR_TARGET(fixture)                                                     \
    INSTANTIATE_TEST_SUITE_P(, fixture, testing::ValuesIn(::TarvaneKit::availableVectorTargets()), \
                             [](const auto& instance) { return instance.param.name; })
