// The agent on a simulated board for fuzz targets: every input finds agent and switch as new.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "base/errors.h"
#include "sim/library/board.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"

// The one board of the process, its switch as new and its agent just loaded.
inline sim::Board& fresh_board() {
    static TempFolder folder;
    static sim::Board board(folder.path());
    reset_agent();
    board.trace.keep();
    board.trace.clear();
    board.log.clear();
    std::destroy_at(&board.device);
    std::construct_at(&board.device);
    return board;
}

inline void require(bool holds) {
    if (!holds)
        std::abort();
}
