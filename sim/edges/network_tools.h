// Simulated ping, traceroute and cat: what the tools of a small Linux write to their output for the
// hosts of sim/library/network.h. What such tools complain of goes to standard error, which the
// agent does not keep. They take as much simulated time as the real ones.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace sim {

// Each is given its command line's words, and returns an exit status.
int ping(const std::vector<std::string>& words, std::ostream& out);
int traceroute(const std::vector<std::string>& words, std::ostream& out);
int show_file(const std::vector<std::string>& words, std::ostream& out);

} // namespace sim
