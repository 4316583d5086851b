// Counting from 0 and from 1.
#include "base/numbers.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(Number, from_1_and_from_0_wraps_at_the_ends) {
    EXPECT_EQ(zero_based(1), 0);
    EXPECT_EQ(zero_based(0), -1);
    EXPECT_EQ(zero_based(INT_MIN), INT_MAX);
    EXPECT_EQ(one_based(-1), 0);
    EXPECT_EQ(one_based(INT_MAX), INT_MIN);
}

} // namespace
