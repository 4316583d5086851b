// A simulated switch of any size: `addresses` learned on its copper ports, in turns, and link on
// every other port.
#pragma once

#include <filesystem>
#include <memory>

#include "sim/library/board.h"

namespace bench {

class SizedSwitch {
  public:
    SizedSwitch(int ports, int addresses);
    ~SizedSwitch();
    SizedSwitch(const SizedSwitch&) = delete;
    SizedSwitch& operator=(const SizedSwitch&) = delete;

  private:
    std::filesystem::path root_;
    std::unique_ptr<sim::Board> board_;
};

} // namespace bench
