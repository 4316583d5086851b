// A switch that has been set up, for scenarios that look at it.
#pragma once

#include "sim/library/board.h"

namespace torture {

// Access lists with entries, a mirror, a group, rate limits, communities, targets, telephones,
// neighbours, diagnostics that wait to be reported.
void put_switch_to_use(sim::Board& board);

// Applies a settings document.
void apply(const char* text);

} // namespace torture
