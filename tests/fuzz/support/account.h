// The agent with the hosts and the account that it has after its start.
#pragma once

void start_agent();
