// "communities" of "snmp": the checks before a change, then its calls in a fixed order.
#include "sections/snmp_communities.h"

#include <stdio.h>
#include <string.h>

#include "base/debug.h"
#include "base/errors.h"
#include "platform/snmp.h"
#include "platform/util.h"
#include "sections/section.h"
#include "sections/snmp.h"

namespace {

// The cloud counts rights from 1, the platform from 0.
enum { CLOUD_READ_ONLY = 1, CLOUD_READ_WRITE = 2 };

const int models[] = {SNMP_MODEL_V1, SNMP_MODEL_V2C};

} // namespace

// --- Report.

int report_snmp_communities(cJSON* communities) {
    for (int slot = 0; slot < SNMP_COMMUNITIES; ++slot) {
        SnmpCommunity community = {};
        if (int code = sal_snmp_com2sec_get(slot, &community))
            return code;
        if (!community.name[0] || community.internal)
            continue;
        cJSON* item = createJsonObject();
        addJsonObjectStringItem(item, "name", community.name);
        addJsonObjectIntItem(item, "access", one_based(static_cast<int>(community.right)));
        addJsonArrayItem(communities, item);
    }
    return 0;
}

// --- Deleting. What is not there any more, after a change that was cut short, needs no deleting.

namespace {

int find_community(const char* name, bool* found) {
    for (int slot = 0; slot < SNMP_COMMUNITIES && !*found; ++slot) {
        SnmpCommunity community = {};
        if (int code = sal_snmp_com2sec_get(slot, &community))
            return code;
        *found = strcmp(community.name, name) == 0;
    }
    return 0;
}

int find_event(const char* community, bool* found) {
    for (int slot = 0; slot < SNMP_RMON_EVENTS && !*found; ++slot) {
        RmonEvent event = {};
        RmonEventRuntime runtime = {};
        if (int code = sal_rmon_event_get(slot, &event))
            return code;
        if (int code = sal_rmon_eventRuntime_get(slot, &runtime))
            return code;
        *found = runtime.active && strcmp(event.community, community) == 0;
    }
    return 0;
}

// `*viewless` is raised for a group that may neither read nor write.
int delete_group(const char* name, int model, bool* viewless) {
    int index = SNMP_NO_INDEX;
    SnmpGroup group = {};
    if (int code = sal_snmp_groupIndex_get(name, model, &index))
        return code;
    if (index == SNMP_NO_INDEX)
        return 0;
    if (int code = sal_snmp_group_get(index, &group))
        return code;
    if (!group.read_view[0] && !group.write_view[0])
        *viewless = true;
    return sal_snmp_group_del(group.community, static_cast<int>(group.model));
}

int delete_groups(const char* name) {
    bool viewless = false;
    for (int model : models) {
        if (int code = delete_group(name, model, &viewless))
            return code;
    }
    return viewless ? ERROR_NO_VIEW : 0;
}

int delete_access(const char* group, int model) {
    int index = SNMP_NO_INDEX;
    SnmpAccess access = {};
    if (int code = sal_snmp_accessIndex_get(group, model, &index))
        return code;
    if (index == SNMP_NO_INDEX)
        return 0;
    if (int code = sal_snmp_access_get(index, &access))
        return code;
    return sal_snmp_access_del(access.group, static_cast<int>(access.model));
}

// A community that an RMON event notifies under must stay, or the event would fall silent.
int check_deletable(const char* name) {
    bool found = false;
    bool used = false;
    if (int code = find_community(name, &found))
        return code;
    if (!found)
        return ERROR_NOT_FOUND;
    if (int code = find_event(name, &used))
        return code;
    if (!used)
        return 0;
    debug_print("This community name are using by RMON event, cannot be deleted!!\n");
    return ERROR_REFUSED;
}

int delete_community(const char* name, const char* group) {
    if (int code = check_deletable(name))
        return code;
    if (int code = sal_snmp_com2sec_del(name))
        return code;
    if (int code = delete_groups(name))
        return code;
    for (int model : models) {
        if (int code = delete_access(group, model))
            return code;
    }
    return 0;
}

// --- Adding.

int check_addable(const char* group) {
    for (int model : models) {
        int index = SNMP_NO_INDEX;
        if (int code = sal_snmp_accessIndex_get(group, model, &index))
            return code;
        if (index != SNMP_NO_INDEX)
            return ERROR_BAD_VALUE;
    }
    if (int code = sal_snmp_accessView_test(group))
        return code;
    return sal_snmp_basic_accessAdd_test(group);
}

int add_access(const char* group, int model, const char* view, int access) {
    SnmpAccess record = {};
    snprintf(record.group, sizeof record.group, "%s", group);
    record.model = static_cast<uint32_t>(model);
    snprintf(record.read_view, sizeof record.read_view, "%s", view);
    if (access == CLOUD_READ_WRITE)
        snprintf(record.write_view, sizeof record.write_view, "%s", view);
    return sal_snmp_access_add(&record);
}

int add_records(const char* name, const char* group, const char* view, int access) {
    SnmpCommunity community = {};
    snprintf(community.name, sizeof community.name, "%s", name);
    community.right = access == CLOUD_READ_WRITE ? SNMP_READ_WRITE : SNMP_READ_ONLY;
    if (int code = sal_snmp_com2sec_add(&community))
        return code;
    for (int model : models) {
        if (int code = sal_snmp_group_add(name, model, group))
            return code;
    }
    for (int model : models) {
        if (int code = add_access(group, model, view, access))
            return code;
    }
    return 0;
}

int add_community(const char* name, const char* group, int access) {
    SnmpView view = {};
    if (int code = sal_snmp_view_get(0, &view))
        return code;
    if (int code = check_addable(group))
        return code;
    if (int code = add_records(name, group, view.name, access))
        return code;
    return sal_snmp_restart();
}

// --- Items.

// What is wrong with an item in itself, or 0.
int find_fault(const char* name, int action, int access) {
    if (!name)
        return ERROR_BAD_VALUE;
    if (sal_util_isInValidStr_ret(name))
        return ERROR_BAD_NAME;
    bool known_access = access == CLOUD_READ_ONLY || access == CLOUD_READ_WRITE;
    return action == SNMP_ADD && !known_access ? ERROR_BAD_VALUE : 0;
}

int set_item(const cJSON* item) {
    int action = 0;
    int access = 0;
    const char* name = getJsonStringValueForKey(item, "name");
    read_int(item, "action", &action);
    read_int(item, "access", &access);
    if (action != SNMP_ADD && action != SNMP_DELETE)
        return 0;
    if (name && strlen(name) > SNMP_COMMUNITY_LENGTH)
        return ERROR_NAME_TOO_LONG;
    if (int code = find_fault(name, action, access)) {
        record_error(code);
        return 0;
    }
    char group[SNMP_NAME_SIZE];
    snprintf(group, sizeof group, "NS_group_%s", name);
    int code =
        action == SNMP_ADD ? add_community(name, group, access) : delete_community(name, group);
    return code ? record_error(code) : 0;
}

} // namespace

int set_snmp_communities(const cJSON* communities) {
    for (const cJSON* item = getJsonChild(communities); item; item = getJsonNext(item)) {
        if (int code = set_item(item))
            return code;
    }
    return 0;
}
