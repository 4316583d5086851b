// Who is let in: bindings of addresses to ports (IP source guard), and lists of who may manage the
// switch.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "driver/acl_mgmt.h"
#include "driver/isg.h"
#include "sim/chip/table.h"

namespace sim {

constexpr std::size_t chip_bindings = 256;
constexpr std::size_t chip_management_rules = 128;

inline auto binding_key(const IsgBinding& entry) {
    return std::tuple(entry.port, entry.vlan, entry.address);
}

inline std::string management_name(const char* name) {
    return {name, strnlen(name, ACL_MGMT_NAME_SIZE)};
}

inline auto rule_key(const AclMgmtEntry& entry) {
    return std::pair(management_name(entry.name), entry.priority);
}

struct ChipManagementLists {
    std::vector<std::string> names;
    ChipTable<AclMgmtEntry, rule_key> rules{chip_management_rules};
    std::optional<AclMgmtClass> in_force;
};

using ChipBindings = ChipTable<IsgBinding, binding_key>;

} // namespace sim
