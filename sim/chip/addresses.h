// MAC addresses of the chip.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

#include "driver/l2.h"
#include "sim/chip/table.h"

namespace sim {

constexpr std::size_t chip_addresses = 16384;
constexpr std::size_t chip_user_addresses = 256; // of all

inline auto address_key(const L2MacEntry& entry) {
    return std::pair(entry.vlan, std::to_array(entry.mac));
}

struct ChipAddresses {
    using Table = ChipTable<L2MacEntry, address_key>;

    Table plain{chip_addresses};
    Table secure{chip_user_addresses}; // those that port security vouches for
    std::vector<L2MacEntry> snapshot;  // both, as of the last request for one
};

} // namespace sim
