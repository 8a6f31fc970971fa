#include "Core/FlushDenormals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace TarvaneKit {
namespace FlushDenormalsTests {

// A product whose result is a denormal number.
double denormalProduct() {
    volatile double smallest = std::numeric_limits<double>::min();
    volatile double half = 0.5;
    return smallest * half;
}

TEST(FlushDenormals, holdsForItsScopeAndEndsWithIt) {
    EXPECT_EQ(std::fpclassify(denormalProduct()), FP_SUBNORMAL);
    {
        const FlushDenormals outer;
        {
            const FlushDenormals inner;
#if defined(__SSE2__) || defined(__aarch64__)
            EXPECT_EQ(denormalProduct(), 0.0);
        }
        EXPECT_EQ(denormalProduct(), 0.0) << "an inner scope's end leaves the outer one";
#else
        }
#endif
    }
    EXPECT_EQ(std::fpclassify(denormalProduct()), FP_SUBNORMAL);
}

#if defined(__SSE2__)
TEST(FlushDenormals, takesDenormalInputsAsZero) {
    volatile float denormal = 1e-40F;
    const FlushDenormals guard;
    EXPECT_EQ(static_cast<double>(denormal), 0.0);
}
#endif

}  // namespace FlushDenormalsTests
}  // namespace TarvaneKit
