// Torture: a scenario is run once to see its calls; then again once for each call that can fail,
// with that call failing, and once more with every call from there on failing. What is to come of
// each stands in the scenario's table, prescription/NAME.txt.
//
// After each run: the codes in the error list, the lines of the system log, the calls that were
// made and not made, and what the scenario shows of the agent are those of the table; no memory and
// no descriptor is left; and it ended in time.
//
// VX_TORTURE=full: every call of every loop. Otherwise the first and the last call of each row of
// the table, and one between them. VX_TORTURE="platform 17 once": that injection alone.
// VX_TORTURE=calls: the clean run's calls, and no injection.
#pragma once

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "sim/library/board.h"

// A switch small enough to be asked thousands of times: two copper ports, two fibre ports, eight
// aggregation groups.
constexpr const char* small_switch = R"({"hardware": {"logical_ports": 12}})";

namespace torture {

// The code with which platform calls and driver requests fail.
constexpr int failure_code = 77;

struct Scenario {
    std::string name;                          // also of its table
    std::function<void(sim::Board&)> prepare;  // the switch and the agent before the run
    std::function<void()> run;                 // what calls may fail in
    std::function<cJSON*(sim::Board&)> result; // what it comes to, as a document; made after the
                                               // run, without faults; the torture deletes it
    std::string board = small_switch;          // a scenario file's text
    bool keeps_flash = true;                   // the run leaves the firmware as it was
    int code = failure_code;
    std::string host = {}; // of its transfers, "HOST" in the table
};

enum Edges : unsigned {
    platform_calls = 1,
    driver_requests = 2,
    files = 4,
    memory = 8,
    transfers = 16,
    every_edge = platform_calls | driver_requests | files | memory | transfers,
};

// Runs the scenario with every fault at these edges, and expects that every row of the table met a
// call, and every call a row.
void torture(const Scenario& scenario, unsigned edges = every_edge);

} // namespace torture
