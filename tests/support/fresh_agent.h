// The agent as it is when its process starts.
#pragma once

// Every process-wide variable of the agent.
void reset_agent();
