// The driver's half of the contract: the functions that the library finds in the agent's
// executable, and the device node behind them.
#pragma once

namespace judge {

void judge_names();            // every exported function is found by its name
void judge_records();          // the driver keeps to the sizes of its records
void judge_unknown_commands(); // and refuses what it does not know

} // namespace judge
