// Settings of the switch chip as a whole. The chip itself keeps them.
#pragma once

#include "sim/chip.h"
#include "sim/fields.h"

namespace sim {

void switch_settings_config(Fields& f, Chip& chip);

} // namespace sim
