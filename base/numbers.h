// The cloud counts from 1 what the platform counts from 0. Either may give any number: sums wrap
// around, and what then makes no sense is the platform's to refuse.
#pragma once

#include <stdint.h>

inline int wrapping_sum(int a, int b) {
    return static_cast<int>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

inline int zero_based(int number) { return wrapping_sum(number, -1); }
inline int one_based(int number) { return wrapping_sum(number, 1); }
