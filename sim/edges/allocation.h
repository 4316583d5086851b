// Memory for the agent, so that the fault plan can run out of it.
#pragma once

namespace sim {

// Whether the fault plan wants the agent's present request for memory to fail.
bool is_out_of_memory();

} // namespace sim
