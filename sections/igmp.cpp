// "igmp": the switch first, then VLAN by VLAN.
#include "sections/igmp.h"

#include "base/errors.h"
#include "platform/igmp.h"
#include "platform/vlan.h"
#include "sections/section.h"

namespace {

int read_vlan(uint32_t vid, McastVlan* vlan) {
    *vlan = {};
    vlan->vid = vid;
    vlan->family = MCAST_FAMILY_IPV4;
    return sal_mcast_vlan_get(vlan);
}

// --- Report.

int report_vlan(cJSON* list, int index) {
    uint32_t vid = 0;
    VlanEntry entry = {};
    McastVlan vlan;
    if (int code = sal_vlan_adminEntrySort_get(index, &vid, &entry))
        return code;
    if (int code = read_vlan(vid, &vlan))
        return code;
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", static_cast<int32_t>(vid));
    addJsonObjectBoolItem(item, "enable", vlan.enable != 0);
    addJsonObjectBoolItem(item, "fast_leave", vlan.fast_leave != 0);
    addJsonArrayItem(list, item);
    return 0;
}

int report_vlans(cJSON* list) {
    uint32_t count = 0;
    if (int code = sal_vlan_operEntryNum_get(&count))
        return record_error(code);
    for (uint32_t index = 0; index < count; ++index) {
        if (int code = report_vlan(list, static_cast<int>(index)))
            return record_error(code);
    }
    return 0;
}

} // namespace

int vxc_igmp_get(cJSON* system) {
    uint32_t enable = 0;
    IgmpInfo info = {};
    if (int code = sal_igmp_enable_get(&enable))
        return record_error(code);
    if (int code = sal_igmp_info_get(&info))
        return record_error(code);
    cJSON* igmp = attachJsonObject(system, "igmp");
    addJsonObjectBoolItem(igmp, "enable", enable != 0);
    addJsonObjectIntItem(igmp, "version", static_cast<int32_t>(info.version));
    return report_vlans(attachJsonArray(igmp, "vlan"));
}

// --- Settings.

namespace {

// IGMPv3 runs only while groups are looked up by group and VLAN; otherwise the version stays as it
// is.
int set_version_3() {
    uint32_t lookup = IGMP_LOOKUP_BY_GROUP;
    if (int code = sal_igmp_lookupMode_get(&lookup))
        return code;
    return lookup == IGMP_LOOKUP_BY_GROUP ? sal_igmp_operVersion_set(3) : 0;
}

int set_version(int version) {
    return version == 3 ? set_version_3() : sal_igmp_operVersion_set(2);
}

void overwrite(const cJSON* item, const char* key, uint32_t* setting) {
    bool value = false;
    if (read_bool(item, key, &value))
        *setting = value;
}

int set_vlan(const cJSON* item, int vid) {
    McastVlan vlan;
    if (int code = read_vlan(static_cast<uint32_t>(vid), &vlan))
        return code;
    overwrite(item, "enable", &vlan.enable);
    overwrite(item, "fast_leave", &vlan.fast_leave);
    return sal_mcast_vlan_set(&vlan);
}

void set_vlans(const cJSON* list) {
    for (const cJSON* item = getJsonChild(list); item; item = getJsonNext(item)) {
        int vid = 0;
        if (!read_int(item, "id", &vid))
            continue;
        if (int code = set_vlan(item, vid)) {
            record_error(code);
            log_failure("igmp set fail");
        }
    }
}

} // namespace

int vxc_igmp_set(const cJSON* system) {
    const cJSON* igmp = getJsonObjectForKey(system, "igmp");
    if (!igmp)
        return 0;
    if (int code = apply_bool(igmp, "enable", sal_igmp_enable_set))
        return record_error(code);
    if (int code = apply_int(igmp, "version", set_version))
        return record_error(code);
    set_vlans(getJsonArrayForKey(igmp, "vlan"));
    return 0;
}
