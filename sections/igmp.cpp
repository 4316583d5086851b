// "igmp"; see igmp.h.
#include "sections/igmp.h"

#include "base/errors.h"
#include "json/json_document.h"
#include "platform/igmp.h"
#include "platform/vlan.h"

namespace {

int vlan_read(uint32_t vid, McastVlan* vlan) {
    *vlan = {};
    vlan->vid = vid;
    vlan->family = MCAST_FAMILY_IPV4;
    return sal_mcast_vlan_get(vlan);
}

// --- Report.

int vlan_report(cJSON* list, int index) {
    uint32_t vid = 0;
    VlanEntry entry = {};
    McastVlan vlan;
    if (int code = sal_vlan_adminEntrySort_get(index, &vid, &entry))
        return code;
    if (int code = vlan_read(vid, &vlan))
        return code;
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", static_cast<int32_t>(vid));
    addJsonObjectBoolItem(item, "enable", vlan.enable != 0);
    addJsonObjectBoolItem(item, "fast_leave", vlan.fast_leave != 0);
    addJsonArrayItem(list, item);
    return 0;
}

int vlans_report(cJSON* list) {
    uint32_t count = 0;
    if (int code = sal_vlan_operEntryNum_get(&count))
        return record_error(code);
    for (uint32_t index = 0; index < count; ++index) {
        if (int code = vlan_report(list, static_cast<int>(index)))
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
    return vlans_report(attachJsonArray(igmp, "vlan"));
}

// --- Settings.

namespace {

int enable_set(const cJSON* igmp) {
    int found;
    int enable = getJsonBoolValueForKey(igmp, "enable", &found);
    return found ? sal_igmp_enable_set(enable != JSON_FALSE) : 0;
}

// IGMPv3 runs only while groups are looked up by group and VLAN; otherwise the version stays as it
// is.
int version_3_set() {
    uint32_t lookup = IGMP_LOOKUP_BY_GROUP;
    if (int code = sal_igmp_lookupMode_get(&lookup))
        return code;
    return lookup == IGMP_LOOKUP_BY_GROUP ? sal_igmp_operVersion_set(3) : 0;
}

int version_set(const cJSON* igmp) {
    int found;
    int version = getJsonIntValueForKey(igmp, "version", &found);
    if (!found)
        return 0;
    return version == 3 ? version_3_set() : sal_igmp_operVersion_set(2);
}

void overwrite(const cJSON* item, const char* key, uint32_t* setting) {
    int found;
    int value = getJsonBoolValueForKey(item, key, &found);
    if (found)
        *setting = value != JSON_FALSE;
}

int vlan_set(const cJSON* item, int vid) {
    McastVlan vlan;
    if (int code = vlan_read(static_cast<uint32_t>(vid), &vlan))
        return code;
    overwrite(item, "enable", &vlan.enable);
    overwrite(item, "fast_leave", &vlan.fast_leave);
    return sal_mcast_vlan_set(&vlan);
}

void vlans_set(const cJSON* list) {
    for (const cJSON* item = getJsonChild(list); item; item = getJsonNext(item)) {
        int found;
        int vid = getJsonIntValueForKey(item, "id", &found);
        if (!found)
            continue;
        if (int code = vlan_set(item, vid)) {
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
    if (int code = enable_set(igmp))
        return record_error(code);
    if (int code = version_set(igmp))
        return record_error(code);
    vlans_set(getJsonArrayForKey(igmp, "vlan"));
    return 0;
}
