// A mirror group is read and written as a whole; what the cloud leaves out stays as it is.
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

int read_sources(int group, Mirror* mirror) {
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

int read_mirror(int group, Mirror* mirror) {
    if (int code = sal_mirror_group_targetPort_get(group, &mirror->target, &mirror->state))
        return code;
    if (mirror->state != 1)
        mirror->target = -1;
    else if (int code = sal_mirror_group_igrState_get(group, &mirror->ingress))
        return code;
    return read_sources(group, mirror);
}

void report_mirror(cJSON* list, int group, const Mirror& mirror) {
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", group + 1);
    addJsonObjectIntItem(item, "destination_port", one_based(mirror.target));
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
        if (int code = read_mirror(group, &mirror))
            return record_error(code);
        report_mirror(list, group, mirror);
    }
    return 0;
}

// --- Settings.

namespace {

// A set of ports for which there is no list stays as it is.
int read_ports(const cJSON* element, const char* key, PortBitmap* ports) {
    const char* list = getJsonStringValueForKey(element, key);
    if (!list)
        return 0;
    *ports = {};
    return sal_util_numstr2bitmap(list, ports);
}

// A group that cannot tell its sources is written with those that the cloud names.
int read_wanted_sources(const cJSON* element, int group, PortBitmap* rx, PortBitmap* tx) {
    sal_mirror_group_sourcePort_get(group, rx, tx);
    if (int code = read_ports(element, "source_rx_port", rx))
        return code;
    return read_ports(element, "source_tx_port", tx);
}

// Without a word about the session the group's own state and target count.
int read_session(const cJSON* element, int group, bool* on, int* target) {
    if (read_bool(element, "session_state", on))
        return 0;
    uint32_t state = 0;
    int code = sal_mirror_group_targetPort_get(group, target, &state);
    *on = state != 0;
    return code;
}

// A group that is switched off goes out of the chip before it is written.
int apply_group(const cJSON* element, int group) {
    bool on = false;
    int target = 0;
    int destination = 0;
    PortBitmap rx = {}, tx = {};
    if (int code = read_session(element, group, &on, &target))
        return code;
    if (int code = on ? 0 : sal_mirror_group_del(group))
        return code;
    if (read_int(element, "destination_port", &destination))
        target = zero_based(destination);
    if (int code = read_wanted_sources(element, group, &rx, &tx))
        return code;
    if (int code = sal_mirror_group_targetPort_set(group, target, 1))
        return code;
    if (int code = sal_mirror_group_sourcePort_set(group, rx, tx))
        return code;
    return apply_int(element, "ingress_state", [group](int ingress) {
        return sal_mirror_group_igrState_set(group, ingress);
    });
}

} // namespace

int vxc_mirror_set(const cJSON* system) {
    const cJSON* element = getJsonChild(getJsonArrayForKey(system, "port_mirror"));
    for (; element; element = getJsonNext(element)) {
        int id = 0;
        if (!read_int(element, "id", &id))
            continue;
        if (int code = apply_group(element, zero_based(id))) {
            record_error(code);
            log_failure("mirror set fail");
        }
    }
    return 0;
}
