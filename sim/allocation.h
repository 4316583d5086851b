// Memory for the agent, so that the fault plan can run out of it.
#pragma once

namespace sim {

// Has the JSON library take its memory through the fault plan. Idempotent.
void use_faultable_allocator();

} // namespace sim
