// The chip; see chip.h.
#include "sim/chip.h"

namespace sim {

int Chip::request(std::uint32_t, void*) { return 0; }

} // namespace sim
