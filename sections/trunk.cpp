// A change of a group: its ports go down, the group is formed anew, its ports come back.
#include "sections/trunk.h"

#include <unistd.h>

#include "base/errors.h"
#include "base/port_set.h"
#include "base/ports.h"
#include "driver/port.h"
#include "platform/port.h"
#include "platform/trunk.h"
#include "platform/util.h"
#include "sections/section.h"
#include "sections/trunk_related.h"

namespace {

enum Mode { MODE_NONE = 0, MODE_STATIC = 1, MODE_LACP = 2 };

int role_of_group(int group) { return sys_trunk_portRole_ret(group_port(group)); }

bool has_no_members(const PortBitmap& members) {
    return sys_util_bitmaskIsClear_ret(members.words, 0, first_group_port());
}

// --- Report.

Mode mode_of_role(int role) {
    if (role == TRUNK_ROLE_LACP_GROUP)
        return MODE_LACP;
    return role == TRUNK_ROLE_STATIC_GROUP ? MODE_STATIC : MODE_NONE;
}

int report_group(cJSON* list, int group) {
    PortBitmap members = {};
    char text[PORT_NUMBERS_SIZE] = "";
    Mode mode = mode_of_role(role_of_group(group));
    if (int code = sal_trunk_member_get(group, &members))
        return code;
    if (!has_no_members(members)) {
        if (int code = sal_util_bitmap2numstr(&members, text))
            return code;
    }
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", group + 1);
    addJsonObjectIntItem(item, "mode", mode);
    addJsonObjectStringItem(item, "members", text);
    addJsonArrayItem(list, item);
    return 0;
}

} // namespace

int vxc_trunk_get(cJSON* system) {
    cJSON* list = attachJsonArray(system, "link_aggregation");
    for (int group = 0; group < TRUNK_GROUPS; ++group) {
        if (int code = report_group(list, group))
            return record_error(code);
    }
    return 0;
}

// --- Settings: what is to become of a group.

namespace {

struct Change {
    int group;
    int mode;
    PortBitmap wanted;
    PortBitmap current;
    PortBitmap changed; // members before or after, but not both
};

int read_change(const cJSON* element, Change* change) {
    if (int code = sal_trunk_member_get(change->group, &change->current))
        return code;
    const char* members = getJsonStringValueForKey(element, "members");
    if (change->mode != MODE_NONE) {
        if (int code = sal_util_numstr2bitmap(members ? members : "", &change->wanted))
            return code;
    }
    change->changed =
        intersection(symmetric_difference(change->wanted, change->current), all_ports());
    return 0;
}

// --- Ports that change their group.

// Port security holds the addresses of a port, which a group would mix with those of others.
int check_security(const PortBitmap& ports) {
    return for_each_port(ports, [](int port) -> int {
        uint32_t on = 0;
        if (int code = sal_port_securityEnable_get(port, &on))
            return code;
        return on == 1 ? ERROR_REFUSED : 0;
    });
}

// The driver is told directly, so that what is configured stays as it is.
int take_links_down(const PortBitmap& ports, PortBitmap* downed) {
    return for_each_port(ports, [downed](int port) {
        uint32_t up = 0;
        int code = sal_port_linkStatus_get(port, &up);
        if (!code && up == 1) {
            add_port(downed, port);
            rsd_port_enable_set(static_cast<uint32_t>(port), 0);
        }
        return code;
    });
}

int bring_links_up(const PortBitmap& downed) {
    return for_each_port(downed, [](int port) {
        uint32_t configured = 0;
        if (int code = sal_port_enable_get(port, &configured))
            return code;
        return configured == 1 ? sal_port_enable_set(port, 1) : 0;
    });
}

// --- Groups of the two kinds.

struct Kind {
    int role; // of the port that stands for such a group
    int (*members_set)(int group, const PortBitmap* members);
    int (*activate)(int group, const PortBitmap* members);
};

int nothing_to_activate(int, const PortBitmap*) { return 0; }

const Kind static_kind = {TRUNK_ROLE_STATIC_GROUP, sal_trunk_staticMember_set, nothing_to_activate};
const Kind lacp_kind = {TRUNK_ROLE_LACP_GROUP, sal_lacp_member_set, sal_lacp_activeMode_set};

int restore_group(const Kind& kind, const Change& change) {
    if (int code = kind.members_set(change.group, &change.current))
        return code;
    return kind.activate(change.group, &change.current);
}

// A group of the other kind gives way, and comes back when this one cannot be formed.
int form_group(const Kind& kind, const Kind& other, const Change& change) {
    bool deleted = false;
    if (!has_no_members(change.current) && role_of_group(change.group) == other.role) {
        if (int code = sal_trunk_group_del(change.group))
            return code;
        deleted = true;
    }
    if (kind.members_set(change.group, &change.wanted))
        return deleted ? restore_group(other, change) : 0;
    if (int code = kind.activate(change.group, &change.wanted))
        return code;
    sn_trunkRelated(change.wanted);
    return 0;
}

int dissolve_group(int group) {
    sn_trunkRelated(only_port(group_port(group)));
    return sal_trunk_group_del(group);
}

int change_group(const Change& change) {
    switch (change.mode) {
    case MODE_LACP:
        return form_group(lacp_kind, static_kind, change);
    case MODE_STATIC:
        return form_group(static_kind, lacp_kind, change);
    case MODE_NONE:
        return dissolve_group(change.group);
    default:
        return 0;
    }
}

int apply_change(const Change& change) {
    PortBitmap downed = {};
    if (int code = check_security(change.changed))
        return code;
    if (int code = take_links_down(change.changed, &downed))
        return code;
    if (!is_empty(downed))
        sleep(2); // seconds, for the partners to see the links go
    if (int code = change_group(change))
        return code;
    return bring_links_up(downed);
}

int apply_element(const cJSON* element) {
    int id = 0;
    int mode = 0;
    if (!read_int(element, "id", &id) || !read_int(element, "mode", &mode)) {
        record_error(ERROR_BAD_VALUE);
        return 0;
    }
    Change change = {zero_based(id), mode, {}, {}, {}};
    if (int code = read_change(element, &change))
        return code;
    return apply_change(change);
}

} // namespace

int vxc_trunk_set(const cJSON* system) {
    const cJSON* element = getJsonChild(getJsonArrayForKey(system, "link_aggregation"));
    for (; element; element = getJsonNext(element)) {
        if (int code = apply_element(element))
            return record_error(code);
    }
    return 0;
}
