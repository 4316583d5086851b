// Access control lists: the lists with their entries, and which are bound to which port. The ranges
// of layer-4 ports that entries refer to are the chip's.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/acl.h"
#include "sim/chip/chip.h"
#include "sim/instruments/fields.h"
#include "sim/library/ace.h"

namespace sim {

struct AclList {
    std::string name;
    std::uint32_t type = ACL_MAC;
    std::vector<Ace> entries; // by sequence number
};

struct Acl {
    explicit Acl(int logical_ports) : bound(static_cast<std::size_t>(logical_ports)) {}

    AclList* find(const std::string& name);
    std::size_t count(std::uint32_t type) const;   // lists
    std::size_t entries(std::uint32_t type) const; // of all lists of a type

    std::size_t list_capacity = 50;                           // of a type
    std::size_t entry_capacity = 256;                         // of a type
    std::vector<AclList> lists;                               // in the order of their creation
    std::vector<std::array<std::string, ACL_IPV4 + 1>> bound; // names, by port and type

    void config(Fields& f, Chip& chip);
    void hardware(Fields& f);
};

} // namespace sim
