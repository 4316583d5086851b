// Traffic counters: the chip's, which grow with simulated time.
#pragma once

namespace sim {

struct Switch;

// Counts what has passed since the last call. To be called before a counter is read or cleared and
// before a link changes.
void count_traffic(Switch& s);

} // namespace sim
