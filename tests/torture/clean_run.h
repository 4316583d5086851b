// A run without faults, taken down call by call: what the runs with faults are held against.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/library/board.h"
#include "tests/torture/prescription.h"

namespace torture {

// What the agent did: a line of the trace, or a file that it opened.
struct Event {
    std::string call;                    // "name(arguments)"; "open PATH"
    std::string result;                  // as traced
    std::uint64_t platform = 0;          // which platform call it is, from 1; 0: none that can fail
    std::uint64_t transfer = 0;          // which transfer it is, from 1
    std::uint64_t file = 0;              // which opening it is, from 1
    std::vector<std::uint64_t> requests; // of the driver that were made within it
    std::vector<std::uint64_t> openings; // of the driver's device within it
    Section* section = nullptr;
    Row* row = nullptr;

    std::string name() const { return call.substr(0, call.find('(')); }
    // The first argument, a number; 0 without one.
    int first_argument() const;
};

struct CleanRun {
    std::vector<Event> events;
    std::vector<std::size_t> allocations; // the event before which each was made
};

// Listens to the fault plan of a board and keeps its trace.
class Recorder {
  public:
    explicit Recorder(sim::Board& board);
    CleanRun take_down(const std::vector<std::string>& lines); // of the trace

  private:
    struct Hit {
        sim::Edge edge;
        std::string name;
        std::size_t line; // of the trace, that comes next
    };
    sim::Board& board_;
    std::vector<Hit> hits_;
};

// The calls of a run as their names and arguments, and the lines that it wrote to the system log,
// which are no calls here. Reads of the number of ports are left out.
struct Calls {
    std::vector<std::string> made;
    std::vector<std::string> results;
    std::vector<std::string> log;
};
Calls calls_of(const std::vector<std::string>& trace);

// Gives each event its section and row. Adds what has none to the test's failures.
void assign_rows(CleanRun& run, Prescription& prescription);

} // namespace torture
