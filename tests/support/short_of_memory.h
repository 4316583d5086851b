// A getter that memory runs out on: what is left of its report.
#pragma once

#include <cstdint>
#include <functional>

#include "json/json_document.h"
#include "sim/library/board.h"

// Runs `getter` once for each allocation that it makes, with that one failing, and for every 16th
// once more with all from there on failing. Expects each time that it returns 0 and records
// nothing, and that its report is the whole one, in its order, without some members or elements:
// exactly one where one allocation failed. Expects whole reports in between and at the end. Returns
// how many allocations there were.
std::uint64_t starve(sim::Board& board, const std::function<int(cJSON*)>& getter);
