// Settings of the switch chip as a whole. The chip itself keeps them.
#pragma once

#include "sim/chip/chip.h"
#include "sim/instruments/fields.h"

namespace sim {

// How many logical ports a switch may have: two fibre ports and eight groups are among them, and a
// set of ports has room for no more.
constexpr int fewest_ports = 11;
constexpr int most_ports = 96;

void switch_settings_config(Fields& f, Chip& chip);

} // namespace sim
