// How much of the heap the agent holds: what is taken or given back while the platform library is
// not at work. For programs that run on the simulated switch.
#pragma once

#include <cstddef>

namespace bench {

void start_counting_heap();       // from nothing
std::size_t stop_counting_heap(); // the most that was held at once, in bytes

} // namespace bench
