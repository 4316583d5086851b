// "trap" of "snmp"; see snmp_targets.h.
#include "sections/snmp_targets.h"

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "base/errors.h"
#include "json/json_document.h"
#include "platform/snmp.h"

namespace {

enum { ADD = 1, DELETE = 2 };

enum { DEFAULT_UDP = 162, DEFAULT_TIMEOUT = 15, DEFAULT_RETRY = 3 };
enum { LONGEST_TIMEOUT = 300, MOST_RETRIES = 255 };

const char* const version_names[] = {"v1", "v2c", "v3"}; // by SNMP_VERSION_...

// --- Report.

const char* version_name(uint32_t version) {
    return version <= SNMP_VERSION_V3 ? version_names[version] : "unknown";
}

void target_report(cJSON* targets, const SnmpTarget& target) {
    bool informs = target.type == SNMP_INFORM_V2C || target.type == SNMP_INFORM_V3;
    cJSON* item = createJsonObject();
    addJsonObjectStringItem(item, "host", target.host);
    addJsonObjectStringItem(item, "version", version_name(target.version));
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

int snmp_targets_report(cJSON* targets) {
    for (int slot = 0; slot < SNMP_TARGETS; ++slot) {
        SnmpTarget target = {};
        if (int code = sal_snmp_target_get(slot, &target))
            return record_error(code);
        if (target.host[0])
            target_report(targets, target);
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
        if (strcmp(version, version_names[kind.version]) || strcmp(notify_type, kind.notify_type))
            continue;
        target->version = kind.version;
        target->type = kind.type;
        return true;
    }
    return false;
}

// False for a text that does not fit: a host that is cut is another host.
bool read_text(const char* text, char* field, size_t size) {
    return snprintf(field, size, "%s", text) < static_cast<int>(size);
}

bool read_texts(const cJSON* item, SnmpTarget* target) {
    const char* host = getJsonStringValueForKey(item, "host");
    const char* community = getJsonStringValueForKey(item, "community_name");
    return host && read_text(host, target->host, sizeof target->host) &&
           read_text(community ? community : "", target->community, sizeof target->community);
}

int number_or(const cJSON* item, const char* key, int otherwise) {
    int found;
    int number = getJsonIntValueForKey(item, key, &found);
    return found ? number : otherwise;
}

// Timeout and retries are judged by their low 16 bits, which are what the platform gets.
bool read_numbers(const cJSON* item, SnmpTarget* target) {
    target->udp = static_cast<uint32_t>(number_or(item, "udp", DEFAULT_UDP));
    target->timeout = static_cast<uint16_t>(number_or(item, "timeout", DEFAULT_TIMEOUT));
    target->retry = static_cast<uint16_t>(number_or(item, "retry", DEFAULT_RETRY));
    return target->timeout >= 1 && target->timeout <= LONGEST_TIMEOUT && target->retry >= 1 &&
           target->retry <= MOST_RETRIES;
}

int item_apply(const SnmpTarget& target, int action) {
    if (action == ADD)
        return sal_snmp_target_add(&target);
    int version = static_cast<int>(target.version);
    return sal_snmp_target_del(target.host, version, static_cast<int>(target.type));
}

int item_set(const cJSON* item) {
    SnmpTarget target = {};
    int action = number_or(item, "action", 0);
    bool good = (action == ADD || action == DELETE) && read_texts(item, &target) &&
                read_kind(item, &target) && read_numbers(item, &target);
    if (!good) {
        record_error(ERROR_BAD_VALUE);
        return 0;
    }
    int code = item_apply(target, action);
    return code ? record_error(code) : 0;
}

} // namespace

int snmp_targets_set(const cJSON* targets) {
    for (const cJSON* item = getJsonChild(targets); item; item = getJsonNext(item)) {
        if (int code = item_set(item))
            return code;
    }
    return 0;
}
