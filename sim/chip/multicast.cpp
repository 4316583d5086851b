// Multicast snooping of the chip: its protocols, VLANs, groups and addresses, and the entries of
// the forwarding tables that come of them.
#include "sim/chip/multicast.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "driver/mcast_entry.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

using Protocol = McastInfo ChipMulticast::*;
constexpr Protocol igmp = &ChipMulticast::igmp;
constexpr Protocol mld = &ChipMulticast::mld;

// --- A protocol: settings, state, counters.

template <Protocol protocol, auto setting> int set(ChipState& chip, RequestWords& words) {
    (chip.multicast.*protocol).*setting = words.value;
    return code_ok;
}

template <Protocol protocol, auto setting> int get(ChipState& chip, RequestWords& words) {
    words.value = (chip.multicast.*protocol).*setting;
    return code_ok;
}

template <Protocol protocol> int get_info(ChipState& chip, MeantEntry<McastInfo>& record) {
    record.entry = chip.multicast.*protocol;
    return code_ok;
}

template <Protocol protocol> int clear_counters(ChipState& chip, RequestWords&) {
    McastInfo& info = chip.multicast.*protocol;
    McastInfo cleared{};
    cleared.enable = info.enable;
    cleared.suppression = info.suppression;
    cleared.version = info.version;
    cleared.lookup_mode = info.lookup_mode;
    cleared.unknown_action = info.unknown_action;
    info = cleared;
    return code_ok;
}

int get_port_statistics(ChipState& chip, MeantEntry<McastPortStatistics>& record) {
    record.entry = chip.multicast.port_statistics[record.words.port];
    return code_ok;
}

int clear_port_statistics(ChipState& chip, RequestWords& words) {
    chip.multicast.port_statistics.erase(words.port);
    return code_ok;
}

// --- VLANs with snooping, and their routers.

bool is_vlan(std::uint32_t vlan) { return vlan >= 1 && vlan <= 4094; }

int add_vlan(ChipState& chip, RequestWords& words) {
    if (!is_vlan(words.vlan))
        return code_bad_value;
    chip.multicast.vlans.try_emplace(words.vlan);
    return code_ok;
}

int del_vlan(ChipState& chip, RequestWords& words) {
    return chip.multicast.vlans.erase(words.vlan) ? code_ok : code_no_vlan;
}

int set_vlan(ChipState& chip, MeantEntry<McastSnooping>& record) {
    if (!is_vlan(record.words.vlan))
        return code_bad_value;
    chip.multicast.vlans[record.words.vlan] = record.entry;
    return code_ok;
}

int get_vlan(ChipState& chip, MeantEntry<McastSnooping>& record) {
    auto vlan = chip.multicast.vlans.find(record.words.vlan);
    if (vlan == chip.multicast.vlans.end())
        return code_no_vlan;
    record.entry = vlan->second;
    return code_ok;
}

int get_vlans(ChipState& chip, MeantEntry<VlanMask>& record) {
    record.entry = {};
    for (const auto& [vlan, snooping] : chip.multicast.vlans)
        add_to(record.entry.words, vlan);
    return code_ok;
}

template <auto set> int set_router_ports(ChipState& chip, MeantEntry<PortBitmap>& record) {
    chip.multicast.routers[record.words.vlan].*set = record.entry;
    return code_ok;
}

int get_forbidden_ports(ChipState& chip, MeantEntry<PortBitmap>& record) {
    record.entry = chip.multicast.routers[record.words.vlan].forbidden;
    return code_ok;
}

int get_router(ChipState& chip, MeantEntry<McastRouter>& record) {
    record.entry = chip.multicast.routers[record.words.vlan];
    return code_ok;
}

// --- Groups.

int add_group(ChipState& chip, MeantEntry<McastGroup>& record) {
    McastGroup group = record.entry;
    group.is_static = 1;
    return chip.multicast.groups.put(group);
}

enum GroupType : std::uint32_t { learned = 0, fixed = 1, both = 2 };

void remove_groups(ChipState& chip, std::uint32_t type) {
    chip.multicast.groups.remove_if([&](const McastGroup& group) {
        return type == both || (group.is_static != 0) == (type == fixed);
    });
}

int clear_groups(ChipState& chip, RequestWords&) {
    remove_groups(chip, both);
    return code_ok;
}

int clear_static_groups(ChipState& chip, RequestWords&) {
    remove_groups(chip, fixed);
    return code_ok;
}

int clear_groups_of_type(ChipState& chip, RequestWords& words) {
    if (words.value > both)
        return code_bad_value;
    remove_groups(chip, words.value);
    return code_ok;
}

// No IPv6 group is ever learned here, and none can be configured.
int clear_no_groups(ChipState&, RequestWords& words) {
    return words.value > both ? code_bad_value : code_ok;
}

int count_no_groups(ChipState&, RequestWords& words) {
    words.value = 0;
    return code_ok;
}

int get_group_room(ChipState& chip, RequestWords& words) {
    words.value = static_cast<std::uint32_t>(chip.multicast.groups.room());
    return code_ok;
}

int count_groups(ChipState& chip, RequestWords& words) {
    words.value = static_cast<std::uint32_t>(chip.multicast.groups.size());
    return code_ok;
}

int count_all(ChipState& chip, RequestWords& words) {
    words.value =
        static_cast<std::uint32_t>(chip.multicast.groups.size() + chip.multicast.macs.size());
    return code_ok;
}

int count_groups_of_any_source(ChipState& chip, RequestWords& words) {
    words.value =
        chip.multicast.groups.count_if([](const McastGroup& group) { return group.source == 0; });
    return code_ok;
}

int get_group(ChipState& chip, MeantEntry<McastGroup>& record) {
    return hand_out(chip.multicast.groups.at(record.words.index), record.entry);
}

// The first entry of each group, whatever the sources of the others.
int get_group_head(ChipState& chip, MeantEntry<McastGroup>& record) {
    std::vector<McastGroup> heads;
    for (const McastGroup& group : chip.multicast.groups.entries())
        if (std::ranges::none_of(heads, [&](const McastGroup& head) {
                return head.vlan == group.vlan && head.group == group.group;
            }))
            heads.push_back(group);
    const std::uint32_t place = record.words.index;
    return hand_out(place < heads.size() ? &heads[place] : nullptr, record.entry);
}

// --- Static MAC addresses.

int set_mac(ChipState& chip, MeantEntry<McastMac>& record) {
    chip.multicast.macs[record.words.index] = record.entry;
    return code_ok;
}

int get_mac(ChipState& chip, MeantEntry<McastMac>& record) {
    auto mac = chip.multicast.macs.find(record.words.index);
    return hand_out(mac == chip.multicast.macs.end() ? nullptr : &mac->second, record.entry);
}

int find_mac(ChipState& chip, MeantEntry<McastMac>& record) {
    for (const auto& [place, mac] : chip.multicast.macs)
        if (mac.vlan == record.entry.vlan &&
            std::memcmp(mac.mac, record.entry.mac, sizeof mac.mac) == 0)
            return hand_out(&mac, record.entry);
    return code_not_found;
}

int clear_macs(ChipState& chip, RequestWords&) {
    chip.multicast.macs.clear();
    return code_ok;
}

int count_macs(ChipState& chip, RequestWords& words) {
    words.value = static_cast<std::uint32_t>(chip.multicast.macs.size());
    return code_ok;
}

// IPv6 multicast has addresses of its own: 33:33 and what follows.
int count_ipv6_macs(ChipState& chip, RequestWords& words) {
    words.value = static_cast<std::uint32_t>(
        std::ranges::count_if(chip.multicast.macs, [](const auto& place) {
            return place.second.mac[0] == 0x33 && place.second.mac[1] == 0x33;
        }));
    return code_ok;
}

// --- The forwarding tables, walked from first to last.

std::vector<L2McastEntry> forwarding(const ChipState& chip, const L2McastEntry&) {
    std::vector<L2McastEntry> table;
    for (const auto& [place, mac] : chip.multicast.macs) {
        L2McastEntry entry{place, mac.vlan, {}, {}, mac.ports};
        std::ranges::copy(mac.mac, entry.mac);
        table.push_back(entry);
    }
    return table;
}

std::vector<IpMcastEntry> forwarding(const ChipState& chip, const IpMcastEntry&) {
    std::vector<IpMcastEntry> table;
    for (const McastGroup& group : chip.multicast.groups.entries())
        table.push_back(
            {static_cast<std::uint32_t>(table.size()), group.vlan, group.group, group.source,
             group.ports});
    return table;
}

template <class Entry> int get_first(ChipState& chip, OrderedEntry<Entry>& record) {
    const auto table = forwarding(chip, record.entry);
    return hand_out(table.empty() ? nullptr : &table.front(), record.entry);
}

template <class Entry> int get_next(ChipState& chip, OrderedEntry<Entry>& record) {
    const auto table = forwarding(chip, record.entry);
    auto next = std::ranges::upper_bound(table, record.entry.place, {}, &Entry::place);
    return hand_out(next == table.end() ? nullptr : &*next, record.entry);
}

constexpr ChipHandler handlers[] = {
    handler<set<igmp, &McastInfo::enable>>(1665),
    handler<set<igmp, &McastInfo::suppression>>(1666),
    handler<set<igmp, &McastInfo::lookup_mode>>(1667),
    handler<clear_counters<igmp>>(1668),
    handler<clear_port_statistics>(1669),
    handler<set_vlan>(1670),
    handler<del_vlan>(1671),
    handler<add_vlan>(1672),
    handler<clear_groups>(1673),
    handler<set<igmp, &McastInfo::unknown_action>>(1674),
    handler<set<igmp, &McastInfo::version>>(1676),
    handler<set_router_ports<&McastRouter::fixed>>(1679),
    handler<set_router_ports<&McastRouter::forbidden>>(1680),
    handler<add_group>(1681),
    handler<set_mac>(1682),
    handler<clear_static_groups>(1684),
    handler<clear_macs>(1685),
    handler<clear_groups_of_type>(1688),
    handler<get_group_room>(1729),
    handler<get<igmp, &McastInfo::suppression>>(1730),
    handler<get_info<igmp>>(1732),
    handler<get_port_statistics>(1733),
    handler<get<igmp, &McastInfo::lookup_mode>>(1734),
    handler<count_all>(1735),
    handler<count_groups>(1736),
    handler<count_macs>(1737),
    handler<count_groups_of_any_source>(1738),
    handler<get_group>(1739),
    handler<get_vlan>(1740),
    handler<get_vlans>(1741),
    handler<get_router>(1742),
    handler<get_group_head>(1743),
    handler<get_forbidden_ports>(1744),
    handler<get_mac>(1746),
    handler<find_mac>(1747),
    handler<get_first<L2McastEntry>>(1857),
    handler<get_next<L2McastEntry>>(1858),
    handler<get_first<IpMcastEntry>>(1859),
    handler<get_next<IpMcastEntry>>(1860),
    handler<set<mld, &McastInfo::enable>>(3201),
    handler<set<mld, &McastInfo::suppression>>(3202),
    handler<clear_counters<mld>>(3203),
    handler<set<mld, &McastInfo::lookup_mode>>(3204),
    handler<clear_no_groups>(3205),
    handler<set<mld, &McastInfo::version>>(3206),
    handler<set<mld, &McastInfo::unknown_action>>(3207),
    handler<get_info<mld>>(3265),
    handler<get<mld, &McastInfo::lookup_mode>>(3266),
    handler<count_no_groups>(3267),
    handler<count_ipv6_macs>(3268),
};

} // namespace

std::span<const ChipHandler> multicast_handlers() { return handlers; }

} // namespace sim
