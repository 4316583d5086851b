// IGMP snooping.
#include "platform/igmp.h"

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

std::string fault_of(const IgmpInfo& info) { return outside("version", info.version, 2, 3); }

std::string fault_of(const McastVlan& record) {
    std::string fault = outside("enable", record.enable, 0, 1);
    return fault.empty() ? outside("fast_leave", record.fast_leave, 0, 1) : fault;
}

// The VLAN goes in with the record. It is put there by the judge, and the call stands for itself.
int vlan_get(int vid, McastVlan* record) {
    record->vid = static_cast<std::uint32_t>(vid);
    record->family = MCAST_FAMILY_IPV4;
    return sal_mcast_vlan_get(record);
}

int vlan_set(int vid, int enable, int fast_leave) {
    McastVlan record = {};
    record.vid = static_cast<std::uint32_t>(vid);
    record.family = MCAST_FAMILY_IPV4;
    record.enable = static_cast<std::uint32_t>(enable);
    record.fast_leave = static_cast<std::uint32_t>(fast_leave);
    return sal_mcast_vlan_set(&record);
}

Operations reads() {
    Parameter record = gives_record<McastVlan>("record", fault_of);
    record.given = 2 * sizeof(std::uint32_t);
    return {
        {NAMED(sal_igmp_enable_get), {gives_flag("enable")}},
        {NAMED(sal_igmp_info_get), {gives_record<IgmpInfo>("info", fault_of)}},
        {NAMED(sal_igmp_lookupMode_get), {gives_flag("mode")}},
        {"sal_mcast_vlan_get", vlan_get, {vlan, record}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_igmp_enable_set), {}, {flag("enable")}, outputs(sal_igmp_enable_get)},
        Setting(
            NAMED(sal_igmp_operVersion_set), {}, {within("version", 2, 3)},
            members(sal_igmp_info_get, &IgmpInfo::version))
            .unless_refused(),
        {"sal_mcast_vlan_set",
         vlan_set,
         {vlan},
         {flag("enable"), flag("fast_leave")},
         members(vlan_get, &McastVlan::enable, &McastVlan::fast_leave)},
    };
}

void agreement() {
    std::uint32_t mode = 0;
    IgmpInfo info = {};
    if (ASK(sal_igmp_lookupMode_get, &mode) == 0 && ASK(sal_igmp_info_get, &info) == 0)
        bench->holds(
            info.version == 2 || mode == IGMP_LOOKUP_BY_GROUP, reason::disagrees,
            "by group and VLAN is the only way in which IGMPv3 can run",
            "version " + std::to_string(info.version) + ", mode " + std::to_string(mode));
}

// Version 3 is taken just where groups are looked up by group.
void changes() {
    std::uint32_t mode = 0;
    IgmpInfo info = {};
    if (ASK(sal_igmp_lookupMode_get, &mode) != 0 || ASK(sal_igmp_info_get, &info) != 0)
        return;
    Undo undo("sal_igmp_operVersion_set", {std::to_string(info.version)});
    int code = ASK(sal_igmp_operVersion_set, 3);
    bench->holds(
        (code == 0) == (mode == IGMP_LOOKUP_BY_GROUP), code ? reason::refused : reason::accepted,
        "IGMPv3 is refused while groups are looked up by MAC address",
        "code " + std::to_string(code) + " with mode " + std::to_string(mode));
}

} // namespace

const Family igmp_family = {"igmp", reads, agreement, settings, changes};

} // namespace judge
