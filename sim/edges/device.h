// The chip's device node, as the agent's driver functions open, ask and close it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sim {

// A descriptor of the device node; -1 with errno when the switch has no driver.
int open_chip();

bool is_chip(int descriptor);

// 0, or -1 with errno when the descriptor is not open.
int close_chip(int descriptor);

// How many are open.
std::size_t open_chip_descriptors();

} // namespace sim
