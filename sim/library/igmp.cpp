// Platform library: IGMP snooping.
#include "sim/library/igmp.h"

#include <string>
#include <vector>

#include "platform/igmp.h"
#include "platform/vlan.h"
#include "sim/library/call.h"

namespace sim {

namespace {

std::string show_vlan(const McastVlan* record) {
    if (!record)
        return "null";
    return "{vlan " + std::to_string(record->vid) + ", family " + std::to_string(record->family) +
           ", enable " + std::to_string(record->enable) + ", fast leave " +
           std::to_string(record->fast_leave) + "}";
}

int check(const Switch& s, const McastVlan* record) {
    if (!record)
        return code_null;
    if (record->family != MCAST_FAMILY_IPV4 || record->vid > VLAN_LAST)
        return code_bad_value;
    return s.vlans.has(static_cast<int>(record->vid)) ? code_ok : code_no_vlan;
}

} // namespace

void Igmp::hardware(Fields& f) {
    f.integer("lookup_mode", lookup_mode, IGMP_LOOKUP_BY_GROUP, IGMP_LOOKUP_BY_MAC);
}

void Igmp::config(Fields& f) {
    struct Row {
        int vid = 0;
        IgmpVlan vlan;
        void fields(Fields& f) {
            f.integer("id", vid, VLAN_FIRST, VLAN_LAST);
            f.boolean("enable", vlan.enable);
            f.boolean("fast_leave", vlan.fast_leave);
        }
    };
    std::vector<Row> rows;
    for (const auto& [vid, vlan] : vlans)
        rows.push_back({vid, vlan});
    f.boolean("enable", enable);
    f.integer("version", version, 2, 3);
    f.list("vlans", rows, VLAN_LAST);
    vlans.clear();
    for (const Row& row : rows)
        vlans[row.vid] = row.vlan;
}

} // namespace sim

using namespace sim;

int sal_igmp_enable_get(uint32_t* enable) {
    return call("sal_igmp_enable_get", [&](Switch& s) {
        *enable = s.igmp.enable;
        return code_ok;
    });
}

int sal_igmp_enable_set(int enable) {
    return call(
        "sal_igmp_enable_set",
        [&](Switch& s) {
            if (enable != 0 && enable != 1)
                return code_bad_value;
            s.igmp.enable = enable == 1;
            return code_ok;
        },
        enable);
}

int sal_igmp_info_get(IgmpInfo* info) {
    return call("sal_igmp_info_get", [&](Switch& s) {
        *info = {};
        info->version = static_cast<uint32_t>(s.igmp.version);
        return code_ok;
    });
}

int sal_igmp_lookupMode_get(uint32_t* mode) {
    return call("sal_igmp_lookupMode_get", [&](Switch& s) {
        *mode = static_cast<uint32_t>(s.igmp.lookup_mode);
        return code_ok;
    });
}

int sal_igmp_operVersion_set(int version) {
    return call(
        "sal_igmp_operVersion_set",
        [&](Switch& s) {
            if (version != 2 && version != 3)
                return code_bad_value;
            if (version == 3 && s.igmp.lookup_mode != IGMP_LOOKUP_BY_GROUP)
                return code_failed;
            s.igmp.version = version;
            return code_ok;
        },
        version);
}

int sal_mcast_vlan_get(McastVlan* record) {
    std::string key =
        record ? std::to_string(record->vid) + ", " + std::to_string(record->family) : "null";
    return call(
        "sal_mcast_vlan_get",
        [&](Switch& s) -> int {
            if (int code = check(s, record))
                return code;
            auto at = s.igmp.vlans.find(static_cast<int>(record->vid));
            IgmpVlan vlan = at == s.igmp.vlans.end() ? IgmpVlan{} : at->second;
            record->enable = vlan.enable;
            record->fast_leave = vlan.fast_leave;
            return code_ok;
        },
        key);
}

int sal_mcast_vlan_set(const McastVlan* record) {
    return call(
        "sal_mcast_vlan_set",
        [&](Switch& s) -> int {
            if (int code = check(s, record))
                return code;
            if (record->enable > 1 || record->fast_leave > 1)
                return code_bad_value;
            s.igmp.vlans[static_cast<int>(record->vid)] = {
                record->enable == 1, record->fast_leave == 1};
            return code_ok;
        },
        show_vlan(record));
}
