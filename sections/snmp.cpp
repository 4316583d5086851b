// "snmp": the service itself; communities and targets have files of their own.
#include "sections/snmp.h"

#include <stdint.h>

#include "base/errors.h"
#include "platform/snmp.h"
#include "sections/section.h"
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
    if (int code = report_snmp_communities(communities)) {
        removeJsonObject(system, "snmp");
        return code;
    }
    return report_snmp_targets(targets);
}

namespace {

int set_enable(bool enable) {
    if (int code = sal_snmp_enable_set(enable))
        return code;
    return enable ? cmd_snmp_demo_restart() : sal_snmp_stop();
}

} // namespace

int vxc_snmp_set(const cJSON* system) {
    const cJSON* snmp = getJsonObjectForKey(system, "snmp");
    if (!snmp)
        return record_error(ERROR_NO_SECTION);
    if (int code = apply_bool(snmp, "enable", set_enable))
        return record_error(code);
    if (int code = set_snmp_communities(getJsonArrayForKey(snmp, "communities")))
        return code;
    const cJSON* targets = getJsonArrayForKey(snmp, "trap");
    if (!targets)
        return 0;
    if (int code = set_snmp_targets(targets))
        return code;
    if (int code = sal_snmp_restart())
        return record_error(code);
    return 0;
}
