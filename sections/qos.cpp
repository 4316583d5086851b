// "qos": the queue maps are written while QoS is on.
#include "sections/qos.h"

#include <stdint.h>

#include "base/errors.h"
#include "platform/qos.h"
#include "sections/section.h"

namespace {

enum { STRICT_PRIORITY = 0, NO_STRICT_PRIORITY = 1, LAST_TRUST_MODE = 2 };

} // namespace

// --- Report.

int vx_qosEnable_get(cJSON* qos) {
    uint32_t mode = 0;
    if (int code = sal_qos_mode_get(&mode))
        return record_error(code);
    addJsonObjectBoolItem(qos, "enable", mode > 0);
    return 0;
}

int vx_qosSchedulMeth_get(cJSON* qos) {
    uint32_t strict = 0;
    if (int code = sal_qos_strictPriQueueNum_get(&strict))
        return record_error(code);
    int method = strict == QOS_QUEUES ? STRICT_PRIORITY : NO_STRICT_PRIORITY;
    addJsonObjectIntItem(qos, "scheduling_method", method);
    return 0;
}

int vx_qosTurstMode_get(cJSON* qos) {
    uint32_t type = 0;
    if (int code = sal_qos_trustType_get(&type))
        return record_error(code);
    addJsonObjectIntItem(qos, "trust_mode", zero_based(static_cast<int>(type)));
    return 0;
}

namespace {

int report_queue_map(cJSON* qos, const char* key, int size, int (*get)(int mark, uint32_t* queue)) {
    cJSON* map = attachJsonArray(qos, key);
    for (int mark = 0; mark < size; ++mark) {
        uint32_t queue = 0;
        if (int code = get(mark, &queue))
            return record_error(code);
        cJSON* entry = createJsonObject();
        addJsonObjectIntItem(entry, "id", mark);
        addJsonObjectIntItem(entry, "queue", one_based(static_cast<int>(queue)));
        addJsonArrayItem(map, entry);
    }
    return 0;
}

} // namespace

int vx_qosCos_get(cJSON* qos) {
    return report_queue_map(qos, "cos", QOS_COS_VALUES, sal_qos_cosQueue_get);
}

int vx_qosDscp_get(cJSON* qos) {
    return report_queue_map(qos, "dscp", QOS_DSCP_VALUES, sal_qos_dscpQueue_get);
}

namespace {

struct QosReader {
    int (*read)(cJSON* qos);
    const char* failure;
};

const QosReader readers[] = {
    {vx_qosEnable_get, "qos enable get fail"},
    {vx_qosSchedulMeth_get, "qos SchedulMeth get fail"},
    {vx_qosTurstMode_get, "qos TurstMode get fail"},
    {vx_qosCos_get, "qos Cos get fail"},
    {vx_qosDscp_get, "qos Dscp get fail"},
};

} // namespace

int vxc_qos_get(cJSON* report) {
    cJSON* qos = attachJsonObject(report, "qos");
    for (const QosReader& reader : readers) {
        if (reader.read(qos))
            log_failure(reader.failure);
    }
    return 0;
}

// --- Settings.

namespace {

int set_scheduling(int method) {
    return sal_qos_strictPriQueueNum_set(method == STRICT_PRIORITY ? QOS_QUEUES : 0);
}

// The cloud counts trust modes from 0, the platform trust types from 1.
int set_trust(int mode) { return sal_qos_trustType_set(one_based(mode)); }

struct QosChoice {
    const char* key;
    unsigned highest;
    int (*set)(int value);
};

const QosChoice choices[] = {
    {"scheduling_method", NO_STRICT_PRIORITY, set_scheduling},
    {"trust_mode", LAST_TRUST_MODE, set_trust},
};

// `*refused` tells a value out of range from a failure of the platform.
int set_choices(const cJSON* qos, bool* refused) {
    for (const QosChoice& choice : choices) {
        int value = 0;
        if (!read_int(qos, choice.key, &value))
            continue;
        *refused = static_cast<unsigned>(value) > choice.highest;
        if (*refused)
            return ERROR_BAD_VALUE;
        if (int code = choice.set(value))
            return code;
    }
    return 0;
}

// What is wrong with an entry goes to the error list and the entry is passed over; what is returned
// is the platform's code.
int set_queue_entry(const cJSON* entry, int size, int (*set)(int mark, int queue)) {
    int mark = 0;
    int queue = 0; // no queue of the cloud's
    if (!read_int(entry, "id", &mark))
        return 0;
    read_int(entry, "queue", &queue);
    if (mark >= 0 && mark < size && queue >= 1 && queue <= QOS_QUEUES)
        return set(mark, zero_based(queue));
    record_error(ERROR_BAD_VALUE);
    return 0;
}

int set_queue_map(const cJSON* qos, const char* key, int size, int (*set)(int mark, int queue)) {
    const cJSON* entry = getJsonChild(getJsonArrayForKey(qos, key));
    for (; entry; entry = getJsonNext(entry)) {
        if (int code = set_queue_entry(entry, size, set))
            return code;
    }
    return 0;
}

int update(const cJSON* qos, bool* refused) {
    if (int code = set_choices(qos, refused))
        return code;
    if (int code = set_queue_map(qos, "cos", QOS_COS_VALUES, sal_qos_cosQueue_set))
        return code;
    return set_queue_map(qos, "dscp", QOS_DSCP_VALUES, sal_qos_dscpQueue_set);
}

// The tables are written with QoS on. Whether it was off; a mode that cannot be read counts as off.
bool switch_on_for_update() {
    uint32_t mode = 0;
    sal_qos_mode_get(&mode);
    if (mode == 0)
        sal_qos_mode_set(1);
    return mode == 0;
}

} // namespace

int vxc_qos_set(const cJSON* qos) {
    if (!qos)
        return 0;
    if (int code = apply_bool(qos, "enable", sal_qos_mode_set))
        return record_error(code);
    bool was_off = switch_on_for_update();
    bool refused = false;
    int code = update(qos, &refused);
    if (was_off && !refused) {
        int off_code = sal_qos_mode_set(0);
        code = code ? code : off_code;
    }
    return code ? record_error(code) : 0;
}
