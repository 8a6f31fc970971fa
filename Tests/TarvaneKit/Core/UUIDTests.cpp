#include "Core/UUID.h"

#include <gtest/gtest.h>

namespace TarvaneKit {
namespace UUIDTests {

TEST(UUID, mainInputHasItsFixedIdentifier) {
    EXPECT_EQ(UUID::main().text(), "6A1D0000-0000-4000-8000-000000000001");
}

TEST(UUID, textIsUpperCaseAndParsesBack) {
    const auto id = UUID::create("6a1d0000-abcd-4000-8000-0000000000ff");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->text(), "6A1D0000-ABCD-4000-8000-0000000000FF");
    EXPECT_EQ(UUID::create(id->text()), id);
}

TEST(UUID, onlyTheCanonicalFormParses) {
    EXPECT_FALSE(UUID::create(""));
    EXPECT_FALSE(UUID::create("6A1D000000004000800000000000000001"));
    EXPECT_FALSE(UUID::create("{6A1D0000-0000-4000-8000-000000000001}"));
    EXPECT_FALSE(UUID::create("6A1D0000-0000-4000-8000-00000000000"));
    EXPECT_FALSE(UUID::create("6A1D0000-0000-4000-8000-00000000000G"));
    EXPECT_FALSE(UUID::create("6A1D0000x0000-4000-8000-000000000001"));
}

TEST(UUID, randomIdentifiersDiffer) {
    EXPECT_NE(UUID::random(), UUID::random());
}

}  // namespace UUIDTests
}  // namespace TarvaneKit
