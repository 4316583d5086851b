// Link aggregation groups, which are the chip's.
#pragma once

#include "sim/chip.h"
#include "sim/fields.h"

namespace sim {

void trunk_config(Fields& f, Chip& chip);

} // namespace sim
