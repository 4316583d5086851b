// Multicast snooping of the chip.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <tuple>

#include "driver/mcast.h"
#include "sim/chip/table.h"

namespace sim {

constexpr std::size_t chip_multicast_groups = 1024;

inline auto group_key(const McastGroup& entry) {
    return std::tuple(entry.vlan, entry.group, entry.source);
}

struct ChipMulticast {
    McastInfo igmp{}, mld{};
    std::map<std::uint32_t, McastPortStatistics> port_statistics;
    std::map<std::uint32_t, McastSnooping> vlans;
    std::map<std::uint32_t, McastRouter> routers; // by VLAN
    ChipTable<McastGroup, group_key> groups{chip_multicast_groups};
    std::map<std::uint32_t, McastMac> macs; // by place
};

} // namespace sim
