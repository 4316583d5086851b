// A port leaves its VLANs of a kind before it joins others; the sweep looks at every VLAN.
#include "sections/port/vlan_upkeep.h"

#include "base/port_set.h"
#include "platform/system.h"
#include "platform/util.h"
#include "platform/vlan.h"

namespace {

bool has_vlan(const VlanMask& vlans, int vid) { return has_bit(vlans.words, vid); }

bool has_no_vlan(const VlanMask& vlans) {
    return sys_util_bitmaskIsClear_ret(vlans.words, 0, VLAN_COUNT) != 0;
}

int create_vlan(int vid) {
    char name[VLAN_NAME_SIZE] = {};
    if (int code = sal_vlan_nameStr_get(vid, "VLAN", name))
        return code;
    return sal_vlan_adminEntry_create(vid, name);
}

int create_missing(const VlanMask& wanted) {
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid) {
        if (!has_vlan(wanted, vid) || sal_vlan_adminEntryExist_ret(vid))
            continue;
        if (int code = create_vlan(vid))
            return code;
    }
    return 0;
}

// Takes the port out of the VLANs that it belongs to in that way. Both ways are read first: a port
// whose membership cannot be read is not touched.
int leave_vlans(int port, int kind) {
    VlanMask untagged = {};
    VlanMask tagged = {};
    if (int code = sal_vlan_portAdminVlanmask_get(port, VLAN_UNTAGGED, &untagged))
        return code;
    if (int code = sal_vlan_portAdminVlanmask_get(port, VLAN_TAGGED, &tagged))
        return code;
    const VlanMask& left = kind == VLAN_UNTAGGED ? untagged : tagged;
    return has_no_vlan(left) ? 0 : sal_vlan_portAdminVlanmask_add(port, VLAN_NOT_MEMBER, &left);
}

} // namespace

int Auto_edit_vlan(int port, int kind, const char* text) {
    VlanMask wanted = {};
    if (int code = sys_util_str2Vlanmask(text, &wanted))
        return code;
    if (int code = leave_vlans(port, kind))
        return code;
    if (int code = create_missing(wanted))
        return code;
    return has_no_vlan(wanted) ? 0 : sal_vlan_portAdminVlanmask_add(port, kind, &wanted);
}

namespace {

int delete_if_empty(int vid) {
    VlanEntry entry = {};
    if (int code = sal_vlan_adminEntry_get(vid, &entry))
        return code;
    if (!sys_util_bitmaskIsClear_ret(entry.members.words, 0, sys_logic_port_num_ret()))
        return 0;
    return sal_vlan_adminEntry_destroy(vid);
}

} // namespace

int Clear_no_member_vlan(void) {
    VlanMask existing = {};
    if (int code = sal_vlan_adminEntryExist_get(&existing))
        return code;
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid) {
        if (!has_vlan(existing, vid))
            continue;
        if (int code = delete_if_empty(vid))
            return code;
    }
    return 0;
}
