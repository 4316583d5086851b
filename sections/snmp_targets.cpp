// "trap" of "snmp": a target is read whole and judged before it is given to the platform.
#include "sections/snmp_targets.h"

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "base/errors.h"
#include "platform/snmp.h"
#include "sections/section.h"
#include "sections/snmp.h"

namespace {

enum { DEFAULT_UDP = 162, DEFAULT_TIMEOUT = 15, DEFAULT_RETRY = 3 };
enum { LONGEST_TIMEOUT = 300, MOST_RETRIES = 255 };

const char* const version_names[] = {"v1", "v2c", "v3"}; // by SNMP_VERSION_...

// --- Report.

const char* find_version_name(uint32_t version) {
    return version <= SNMP_VERSION_V3 ? version_names[version] : "unknown";
}

void report_target(cJSON* targets, const SnmpTarget& target) {
    bool informs = target.type == SNMP_INFORM_V2C || target.type == SNMP_INFORM_V3;
    cJSON* item = createJsonObject();
    addJsonObjectStringItem(item, "host", target.host);
    addJsonObjectStringItem(item, "version", find_version_name(target.version));
    addJsonObjectStringItem(item, "notify_type", informs ? "informs" : "traps");
    addJsonObjectStringItem(
        item, "community_name", target.version == SNMP_VERSION_V3 ? "" : target.community);
    addJsonObjectIntItem(item, "udp", static_cast<int32_t>(target.udp));
    if (informs) {
        addJsonObjectIntItem(item, "timeout", target.timeout);
        addJsonObjectIntItem(item, "retry", target.retry);
    }
    addJsonArrayItem(targets, item);
}

} // namespace

int report_snmp_targets(cJSON* targets) {
    for (int slot = 0; slot < SNMP_TARGETS; ++slot) {
        SnmpTarget target = {};
        if (int code = sal_snmp_target_get(slot, &target))
            return record_error(code);
        if (target.host[0])
            report_target(targets, target);
    }
    return 0;
}

// --- Settings.

namespace {

// What the cloud may ask for; SNMPv3 targets need users, which it does not know.
struct TargetKind {
    uint32_t version;
    const char* notify_type;
    uint32_t type;
};

const TargetKind kinds[] = {
    {SNMP_VERSION_V1, "traps", SNMP_TRAP_V1},
    {SNMP_VERSION_V2C, "traps", SNMP_TRAP_V2C},
    {SNMP_VERSION_V2C, "informs", SNMP_INFORM_V2C},
};

bool read_kind(const cJSON* item, SnmpTarget* target) {
    const char* version = getJsonStringValueForKey(item, "version");
    const char* notify_type = getJsonStringValueForKey(item, "notify_type");
    if (!version || !notify_type)
        return false;
    for (const TargetKind& kind : kinds) {
        if (strcmp(version, version_names[kind.version]) != 0 ||
            strcmp(notify_type, kind.notify_type) != 0)
            continue;
        target->version = kind.version;
        target->type = kind.type;
        return true;
    }
    return false;
}

// False for a text that does not fit: a host that is cut is another host.
bool copy_text(const char* text, char* field, size_t size) {
    return snprintf(field, size, "%s", text) < static_cast<int>(size);
}

bool read_texts(const cJSON* item, SnmpTarget* target) {
    const char* host = getJsonStringValueForKey(item, "host");
    const char* community = getJsonStringValueForKey(item, "community_name");
    return host && copy_text(host, target->host, sizeof target->host) &&
           copy_text(community ? community : "", target->community, sizeof target->community);
}

int read_number(const cJSON* item, const char* key, int otherwise) {
    int number = otherwise;
    read_int(item, key, &number);
    return number;
}

// Timeout and retries are judged by their low 16 bits, which are what the platform gets.
bool read_numbers(const cJSON* item, SnmpTarget* target) {
    target->udp = static_cast<uint32_t>(read_number(item, "udp", DEFAULT_UDP));
    target->timeout = static_cast<uint16_t>(read_number(item, "timeout", DEFAULT_TIMEOUT));
    target->retry = static_cast<uint16_t>(read_number(item, "retry", DEFAULT_RETRY));
    return target->timeout >= 1 && target->timeout <= LONGEST_TIMEOUT && target->retry >= 1 &&
           target->retry <= MOST_RETRIES;
}

int apply_item(const SnmpTarget& target, int action) {
    if (action == SNMP_ADD)
        return sal_snmp_target_add(&target);
    int version = static_cast<int>(target.version);
    return sal_snmp_target_del(target.host, version, static_cast<int>(target.type));
}

int set_item(const cJSON* item) {
    SnmpTarget target = {};
    int action = read_number(item, "action", 0);
    bool good = (action == SNMP_ADD || action == SNMP_DELETE) && read_texts(item, &target) &&
                read_kind(item, &target) && read_numbers(item, &target);
    if (!good) {
        record_error(ERROR_BAD_VALUE);
        return 0;
    }
    int code = apply_item(target, action);
    return code ? record_error(code) : 0;
}

} // namespace

int set_snmp_targets(const cJSON* targets) {
    for (const cJSON* item = getJsonChild(targets); item; item = getJsonNext(item)) {
        if (int code = set_item(item))
            return code;
    }
    return 0;
}
