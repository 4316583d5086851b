// The "port_mirror" section; see mirror.h.
#include "sections/mirror.h"

#include "base/errors.h"
#include "platform/mirror.h"
#include "platform/util.h"
#include "sections/section.h"

namespace {

struct Mirror {
    int target; // -1: none
    uint32_t state;
    uint32_t ingress;
    char tx[PORT_NUMBERS_SIZE];
    char rx[PORT_NUMBERS_SIZE];
};

// --- Report.

int sources_read(int group, Mirror* mirror) {
    PortBitmap rx = {}, tx = {};
    uint32_t on = 0;
    if (int code = sal_mirror_group_state_get(group, &on))
        return code;
    if (on != 1)
        return 0;
    if (int code = sal_mirror_group_sourcePort_get(group, &rx, &tx))
        return code;
    if (int code = sal_util_bitmap2numstr(&tx, mirror->tx))
        return code;
    return sal_util_bitmap2numstr(&rx, mirror->rx);
}

int mirror_read(int group, Mirror* mirror) {
    if (int code = sal_mirror_group_targetPort_get(group, &mirror->target, &mirror->state))
        return code;
    if (mirror->state != 1)
        mirror->target = -1;
    else if (int code = sal_mirror_group_igrState_get(group, &mirror->ingress))
        return code;
    return sources_read(group, mirror);
}

void mirror_report(cJSON* list, int group, const Mirror& mirror) {
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", group + 1);
    addJsonObjectIntItem(item, "destination_port", mirror.target + 1);
    addJsonObjectStringItem(item, "source_tx_port", mirror.tx);
    addJsonObjectStringItem(item, "source_rx_port", mirror.rx);
    addJsonObjectIntItem(item, "ingress_state", static_cast<int32_t>(mirror.ingress));
    addJsonObjectBoolItem(item, "session_state", mirror.state != 0);
    addJsonArrayItem(list, item);
}

} // namespace

int vxc_mirror_get(cJSON* system) {
    cJSON* list = attachJsonArray(system, "port_mirror");
    for (int group = 0; group < MIRROR_GROUPS; ++group) {
        Mirror mirror = {};
        if (int code = mirror_read(group, &mirror))
            return record_error(code);
        mirror_report(list, group, mirror);
    }
    return 0;
}

// --- Settings.

namespace {

// A set of ports for which there is no list stays as it is.
int ports_wanted(const cJSON* element, const char* key, PortBitmap* ports) {
    const char* list = getJsonStringValueForKey(element, key);
    if (!list)
        return 0;
    *ports = {};
    return sal_util_numstr2bitmap(list, ports);
}

// A group that cannot tell its sources is written with those that the cloud names.
int sources_wanted(const cJSON* element, int group, PortBitmap* rx, PortBitmap* tx) {
    sal_mirror_group_sourcePort_get(group, rx, tx);
    if (int code = ports_wanted(element, "source_rx_port", rx))
        return code;
    return ports_wanted(element, "source_tx_port", tx);
}

// A group that is switched off goes out of the chip first.
int target_wanted(const cJSON* element, int group, int* target) {
    int found;
    uint32_t state = getJsonBoolValueForKey(element, "session_state", &found) != JSON_FALSE;
    if (!found) {
        if (int code = sal_mirror_group_targetPort_get(group, target, &state))
            return code;
    }
    if (!state) {
        if (int code = sal_mirror_group_del(group))
            return code;
    }
    int destination = getJsonIntValueForKey(element, "destination_port", &found);
    if (found)
        *target = zero_based(destination);
    return 0;
}

int group_set(const cJSON* element, int group) {
    int target = 0;
    PortBitmap rx = {}, tx = {};
    if (int code = target_wanted(element, group, &target))
        return code;
    if (int code = sources_wanted(element, group, &rx, &tx))
        return code;
    if (int code = sal_mirror_group_targetPort_set(group, target, 1))
        return code;
    if (int code = sal_mirror_group_sourcePort_set(group, rx, tx))
        return code;
    int found;
    int ingress = getJsonIntValueForKey(element, "ingress_state", &found);
    return found ? sal_mirror_group_igrState_set(group, ingress) : 0;
}

} // namespace

int vxc_mirror_set(const cJSON* system) {
    const cJSON* list = getJsonObjectForKey(system, "port_mirror");
    for (const cJSON* element = getJsonChild(list); element; element = getJsonNext(element)) {
        int found;
        int id = getJsonIntValueForKey(element, "id", &found);
        if (!found)
            continue;
        if (int code = group_set(element, zero_based(id))) {
            record_error(code);
            log_failure("mirror set fail");
        }
    }
    return 0;
}
