// Torture: a run is made once to count the calls in it that can fail; then again once for each of
// them, with that call failing, and once more with every call from there on failing.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "sim/library/board.h"

// A switch small enough to be asked thousands of times: two copper ports, two fibre ports, eight
// aggregation groups.
constexpr const char* small_switch = R"({"hardware": {"logical_ports": 12}})";

struct TorturedRun {
    std::function<void(sim::Board&)> prepare; // the switch before the run
    std::function<void()> run;                // what calls may fail in
    std::function<std::string()> outcome;     // what the switch and the agent show afterwards
};

// The code with which platform calls and driver requests fail.
constexpr int torture_code = 77;

// Fails every call at `edge` in turn. After each failing run: the error list is within its bounds,
// every line of the system log is one of the agent's fixed texts, and the same run without a fault
// ends as it would have on a switch that never saw one. Returns how many calls there were.
std::uint64_t torture(sim::Edge edge, const TorturedRun& tortured);
