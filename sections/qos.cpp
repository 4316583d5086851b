// "qos"; see qos.h.
#include "sections/qos.h"

#include <stdint.h>

#include "base/errors.h"
#include "json/json_document.h"
#include "platform/qos.h"

namespace {

// The cloud counts queues from 1, the platform from 0; likewise trust modes from 0 and types from
// 1.
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
    addJsonObjectIntItem(qos, "trust_mode", static_cast<int32_t>(type) - 1);
    return 0;
}

namespace {

int queue_map_get(cJSON* qos, const char* key, int size, int (*get)(int mark, uint32_t* queue)) {
    cJSON* map = attachJsonArray(qos, key);
    for (int mark = 0; mark < size; ++mark) {
        uint32_t queue = 0;
        if (int code = get(mark, &queue))
            return record_error(code);
        cJSON* entry = createJsonObject();
        addJsonObjectIntItem(entry, "id", mark);
        addJsonObjectIntItem(entry, "queue", static_cast<int32_t>(queue) + 1);
        addJsonArrayItem(map, entry);
    }
    return 0;
}

} // namespace

int vx_qosCos_get(cJSON* qos) {
    return queue_map_get(qos, "cos", QOS_COS_VALUES, sal_qos_cosQueue_get);
}

int vx_qosDscp_get(cJSON* qos) {
    return queue_map_get(qos, "dscp", QOS_DSCP_VALUES, sal_qos_dscpQueue_get);
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

int scheduling_set(int method) {
    return sal_qos_strictPriQueueNum_set(method == STRICT_PRIORITY ? QOS_QUEUES : 0);
}

int trust_set(int mode) { return sal_qos_trustType_set(mode + 1); }

struct QosChoice {
    const char* key;
    unsigned highest;
    int (*set)(int value);
};

const QosChoice choices[] = {
    {"scheduling_method", NO_STRICT_PRIORITY, scheduling_set},
    {"trust_mode", LAST_TRUST_MODE, trust_set},
};

// `*refused` tells a value out of range from a failure of the platform.
int choices_set(const cJSON* qos, bool* refused) {
    for (const QosChoice& choice : choices) {
        int found;
        int value = getJsonIntValueForKey(qos, choice.key, &found);
        if (!found)
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
int queue_entry_set(const cJSON* entry, int size, int (*set)(int mark, int queue)) {
    int found;
    int mark = getJsonIntValueForKey(entry, "id", &found);
    if (!found)
        return 0;
    int queue = getJsonIntValueForKey(entry, "queue", &found);
    bool good = mark >= 0 && mark < size && found && queue >= 1 && queue <= QOS_QUEUES;
    if (good)
        return set(mark, queue - 1);
    record_error(ERROR_BAD_VALUE);
    return 0;
}

int queue_map_set(const cJSON* qos, const char* key, int size, int (*set)(int mark, int queue)) {
    const cJSON* entry = getJsonChild(getJsonArrayForKey(qos, key));
    for (; entry; entry = getJsonNext(entry)) {
        if (int code = queue_entry_set(entry, size, set))
            return code;
    }
    return 0;
}

int update(const cJSON* qos, bool* refused) {
    if (int code = choices_set(qos, refused))
        return code;
    if (int code = queue_map_set(qos, "cos", QOS_COS_VALUES, sal_qos_cosQueue_set))
        return code;
    return queue_map_set(qos, "dscp", QOS_DSCP_VALUES, sal_qos_dscpQueue_set);
}

int enable_set(const cJSON* qos) {
    int found;
    int enable = getJsonBoolValueForKey(qos, "enable", &found);
    return found ? sal_qos_mode_set(enable != JSON_FALSE) : 0;
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
    if (int code = enable_set(qos))
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
