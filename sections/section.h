// What several sections need to read the cloud's numbers.
#pragma once

#include <stdint.h>

// The cloud counts ports and groups from 1, the platform from 0. Wraps around where there is no
// smaller number, for the platform to refuse.
inline int zero_based(int number) { return static_cast<int>(static_cast<uint32_t>(number) - 1); }
