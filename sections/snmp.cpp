// "snmp"; see snmp.h.
#include "sections/snmp.h"

#include <stdint.h>

#include "base/errors.h"
#include "json/json_document.h"
#include "platform/snmp.h"
#include "sections/snmp_communities.h"
#include "sections/snmp_targets.h"

int vxc_snmp_get(cJSON* system) {
    uint32_t enable = 0;
    if (int code = sal_snmp_enable_get(&enable))
        return record_error(code);
    cJSON* snmp = attachJsonObject(system, "snmp");
    addJsonObjectBoolItem(snmp, "enable", enable != 0);
    cJSON* communities = attachJsonArray(snmp, "communities");
    cJSON* targets = attachJsonArray(snmp, "trap");
    if (int code = snmp_communities_report(communities)) {
        removeJsonObject(system, "snmp");
        return code;
    }
    return snmp_targets_report(targets);
}

namespace {

int enable_set(const cJSON* snmp) {
    int found;
    int enable = getJsonBoolValueForKey(snmp, "enable", &found);
    if (!found)
        return 0;
    if (int code = sal_snmp_enable_set(enable != JSON_FALSE))
        return code;
    return enable != JSON_FALSE ? cmd_snmp_demo_restart() : sal_snmp_stop();
}

} // namespace

int vxc_snmp_set(const cJSON* system) {
    const cJSON* snmp = getJsonObjectForKey(system, "snmp");
    if (!snmp)
        return record_error(ERROR_NO_SECTION);
    if (int code = enable_set(snmp))
        return record_error(code);
    if (int code = snmp_communities_set(getJsonArrayForKey(snmp, "communities")))
        return code;
    const cJSON* targets = getJsonArrayForKey(snmp, "trap");
    if (!targets)
        return 0;
    if (int code = snmp_targets_set(targets))
        return code;
    if (int code = sal_snmp_restart())
        return record_error(code);
    return 0;
}
