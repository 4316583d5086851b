// What starts the agent's process on the switch, and starts it again when it has ended for that.
#pragma once

#include <functional>

namespace sim {

// Runs `agent` in a process of its own, and in a new one each time it ends with end_for_restart().
// Signals that ask to end, and local requests, go on to the process that runs. Returns what the
// last one returned; where a signal ended it, the same signal ends this process. When this process
// is killed, so is the agent's.
int run_agent(const std::function<int()>& agent);

// Ends the agent's process, to be started afresh.
[[noreturn]] void end_for_restart();

} // namespace sim
