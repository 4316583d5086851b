// VLANs of the chip, and what dynamic registration (GVRP) knows of them.
#pragma once

#include <array>
#include <cstdint>
#include <map>

#include "driver/gvrp.h"
#include "driver/vlan.h"
#include "sim/chip/table.h"

namespace sim {

constexpr std::uint32_t chip_vlans = 4094;

// Kinds of a port's membership.
enum ChipMembership : std::uint32_t { excluded = 0, forbidden = 1, untagged = 2, tagged = 3 };
constexpr std::size_t chip_memberships = 4;

inline std::uint32_t registered_key(const GvrpVlan& entry) { return entry.vlan; }

struct ChipVlans {
    struct Vlan {
        ChipVlan entry{};
        double came_s = 0; // running time
    };

    std::uint32_t by_default = 1;
    std::map<std::uint32_t, Vlan> all{{1, Vlan{{1, 0, {}, {}, "", {}}}}};
    std::map<std::uint32_t, std::array<VlanMask, chip_memberships>> of_ports;
    std::uint32_t deleted = 0; // since start
    ChipTable<GvrpVlan, registered_key> registered{chip_vlans};
};

} // namespace sim
