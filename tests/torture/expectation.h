// What the table says of a run in which calls fail: the rows of the calls that do, one after the
// other, each saying where the agent goes on.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/torture/clean_run.h"

namespace torture {

struct Expectation {
    std::vector<std::string> calls;
    std::vector<std::string> codes;
    std::vector<std::string> log;
    std::vector<std::string> edits;      // of the clean run's result
    std::vector<std::string> last_edits; // after those
};

// The code with which an event of the clean run fails, if it does. It is given the event's number
// and the number of calls that came before it in the run, and the call.
using Fails = std::function<std::optional<std::string>(
    std::size_t event, std::size_t calls, const std::string& call)>;

// Throws std::runtime_error for a table that cannot be followed.
Expectation expect_failures(const CleanRun& clean, const Fails& fails, bool for_good);

} // namespace torture
