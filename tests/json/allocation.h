// Makes an allocation of the code under test fail: the JSON library's and the JSON layer's own.
#pragma once

#include "sim/library/board.h"

// While it lives, the `nth` allocation from now on (from 0), and every one after it if `for_good`,
// returns null. Needs a board.
class AllocationFailure {
  public:
    explicit AllocationFailure(std::uint64_t nth, bool for_good = false) : nth_(nth) {
        sim::board().faults.clear();
        sim::board().faults.plan({sim::Edge::allocation, "", nth + 1, for_good, 1, 0});
    }
    ~AllocationFailure() { sim::board().faults.clear(); }
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;

    bool happened() const { return sim::board().faults.count(sim::Edge::allocation) > nth_; }

  private:
    std::uint64_t nth_;
};
