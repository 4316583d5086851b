// The simulated switch chip: what answers a request on "/dev/ski".
#pragma once

#include <cstdint>

namespace sim {

class Chip {
  public:
    explicit Chip(int logical_ports) : ports_(logical_ports) {}
    int ports() const { return ports_; }
    int request(std::uint32_t command, void* record);

  private:
    int ports_;
};

} // namespace sim
