// The agent on a simulated board for fuzz targets: every input finds agent and switch as new.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "sim/library/board.h"

// One run on the one board of the process, which is in memory. Its switch is as new, with six
// copper ports; its agent is just loaded; a save of the configuration succeeds and writes nothing.
// What the run has changed is put back when it ends.
class Run {
  public:
    Run();
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    sim::Board& board;
};

// Puts a file on the board.
void put_file(
    const sim::Board& board, const char* path, const std::uint8_t* data, std::size_t size);

inline void require(bool holds) {
    if (!holds)
        std::abort();
}

// Whether an input is one of every `count`: for what costs too much to be done with each. It goes
// by the bytes alone, so that a find can be replayed.
bool one_in(std::uint32_t count, const std::uint8_t* data, std::size_t size);
