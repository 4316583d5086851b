// Quality of service.
#include "platform/qos.h"

#include "judge/family.h"

namespace judge {

namespace {

const Parameter strict = within("count", 0, QOS_QUEUES);
const Parameter trust_type = within("type", 1, 3);
const Parameter queue = within("queue", 0, QOS_QUEUES - 1);
const Parameter cos = within("cos", 0, QOS_COS_VALUES - 1);
const Parameter dscp = within("dscp", 0, QOS_DSCP_VALUES - 1);

Operations reads() {
    return {
        {NAMED(sal_qos_mode_get), {gives_flag("mode")}},
        {NAMED(sal_qos_strictPriQueueNum_get), {gives(strict)}},
        {NAMED(sal_qos_trustType_get), {gives(trust_type)}},
        {NAMED(sal_qos_cosQueue_get), {cos, gives(queue)}},
        {NAMED(sal_qos_dscpQueue_get), {dscp, gives(queue)}},
        {NAMED(sal_qos_portCos_get), {port, gives(cos)}},
        {NAMED(sal_qos_portTrustState_get), {port, gives_flag("trust")}},
    };
}

template <class Setter>
Setting while_on(const char* name, Setter set, Parameters keys, Parameter value, Reader read) {
    return Setting(name, set, std::move(keys), {std::move(value)}, std::move(read))
        .only_while("sal_qos_mode_set", 1);
}

Settings settings() {
    return {
        {NAMED(sal_qos_mode_set), {}, {flag("mode")}, outputs(sal_qos_mode_get)},
        while_on(
            NAMED(sal_qos_strictPriQueueNum_set), {}, strict,
            outputs(sal_qos_strictPriQueueNum_get)),
        while_on(NAMED(sal_qos_trustType_set), {}, trust_type, outputs(sal_qos_trustType_get)),
        while_on(NAMED(sal_qos_cosQueue_set), {cos}, queue, outputs(sal_qos_cosQueue_get)),
        while_on(NAMED(sal_qos_dscpQueue_set), {dscp}, queue, outputs(sal_qos_dscpQueue_get)),
        while_on(NAMED(sal_qos_portCos_set), {port}, cos, outputs(sal_qos_portCos_get)),
        while_on(
            NAMED(sal_qos_portTrustState_set), {port}, flag("trust"),
            outputs(sal_qos_portTrustState_get)),
    };
}

} // namespace

const Family qos_family = {"qos", reads, nullptr, settings, nullptr};

} // namespace judge
