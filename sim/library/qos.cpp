// Platform library: quality of service.
#include "sim/library/qos.h"

#include "platform/qos.h"
#include "sim/library/call.h"

namespace sim {

namespace {

constexpr int highest_cos = QOS_COS_VALUES - 1;
constexpr int highest_queue = QOS_QUEUES - 1;
constexpr int highest_trust_type = 3;

bool within(int value, int low, int high) { return value >= low && value <= high; }

int number_get(const char* name, int Qos::*member, uint32_t* number) {
    return call(name, [&](Switch& s) {
        *number = static_cast<uint32_t>(s.qos.*member);
        return code_ok;
    });
}

int number_set(const char* name, int Qos::*member, int low, int high, int number) {
    return call(
        name,
        [&](Switch& s) {
            if (!within(number, low, high))
                return code_bad_value;
            if (!s.qos.on)
                return code_failed;
            s.qos.*member = number;
            return code_ok;
        },
        number);
}

template <std::size_t size>
int queue_get(
    const char* name, std::array<QueueChoice, size> Qos::*map, int mark, uint32_t* queue) {
    return call(
        name,
        [&](Switch& s) {
            if (!within(mark, 0, static_cast<int>(size) - 1))
                return code_bad_value;
            *queue = static_cast<uint32_t>((s.qos.*map)[static_cast<std::size_t>(mark)].queue);
            return code_ok;
        },
        mark);
}

template <std::size_t size>
int queue_set(const char* name, std::array<QueueChoice, size> Qos::*map, int mark, int queue) {
    return call(
        name,
        [&](Switch& s) {
            if (!within(mark, 0, static_cast<int>(size) - 1) || !within(queue, 0, highest_queue))
                return code_bad_value;
            if (!s.qos.on)
                return code_failed;
            (s.qos.*map)[static_cast<std::size_t>(mark)].queue = queue;
            return code_ok;
        },
        mark, queue);
}

template <class Body, class... Arguments>
int qos_port_call(const char* name, int port, Body body, const Arguments&... arguments) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            return body(s.qos.ports[static_cast<std::size_t>(port)], s.qos.on);
        },
        port, arguments...);
}

} // namespace

void PortQos::fields(Fields& f) {
    f.integer("cos", cos, 0, highest_cos);
    f.boolean("trust", trust);
}

void QueueChoice::fields(Fields& f) { f.integer("queue", queue, 0, highest_queue); }

Qos::Qos(int logical_ports) : ports(static_cast<std::size_t>(logical_ports)) {
    for (std::size_t cos = 0; cos < cos_queues.size(); ++cos)
        cos_queues[cos].queue = static_cast<int>(cos);
    for (std::size_t dscp = 0; dscp < dscp_queues.size(); ++dscp)
        dscp_queues[dscp].queue = static_cast<int>(dscp / QOS_QUEUES);
}

void Qos::config(Fields& f) {
    f.boolean("on", on);
    f.integer("strict_queues", strict_queues, 0, QOS_QUEUES);
    f.integer("trust_type", trust_type, 1, highest_trust_type);
    f.slots("cos_queues", cos_queues);
    f.slots("dscp_queues", dscp_queues);
    f.slots("ports", ports);
}

} // namespace sim

using namespace sim;

int sal_qos_mode_get(uint32_t* mode) {
    return call("sal_qos_mode_get", [&](Switch& s) {
        *mode = s.qos.on;
        return code_ok;
    });
}

int sal_qos_mode_set(int mode) {
    return call(
        "sal_qos_mode_set",
        [&](Switch& s) {
            if (mode != 0 && mode != 1)
                return code_bad_value;
            s.qos.on = mode != 0;
            return code_ok;
        },
        mode);
}

int sal_qos_strictPriQueueNum_get(uint32_t* count) {
    return number_get("sal_qos_strictPriQueueNum_get", &Qos::strict_queues, count);
}

int sal_qos_strictPriQueueNum_set(int count) {
    return number_set("sal_qos_strictPriQueueNum_set", &Qos::strict_queues, 0, QOS_QUEUES, count);
}

int sal_qos_trustType_get(uint32_t* type) {
    return number_get("sal_qos_trustType_get", &Qos::trust_type, type);
}

int sal_qos_trustType_set(int type) {
    return number_set("sal_qos_trustType_set", &Qos::trust_type, 1, highest_trust_type, type);
}

int sal_qos_cosQueue_get(int cos, uint32_t* queue) {
    return queue_get("sal_qos_cosQueue_get", &Qos::cos_queues, cos, queue);
}

int sal_qos_cosQueue_set(int cos, int queue) {
    return queue_set("sal_qos_cosQueue_set", &Qos::cos_queues, cos, queue);
}

int sal_qos_dscpQueue_get(int dscp, uint32_t* queue) {
    return queue_get("sal_qos_dscpQueue_get", &Qos::dscp_queues, dscp, queue);
}

int sal_qos_dscpQueue_set(int dscp, int queue) {
    return queue_set("sal_qos_dscpQueue_set", &Qos::dscp_queues, dscp, queue);
}

int sal_qos_portCos_get(int port, uint32_t* cos) {
    return qos_port_call("sal_qos_portCos_get", port, [&](const PortQos& p, bool) {
        *cos = p.cos;
        return code_ok;
    });
}

int sal_qos_portCos_set(int port, int cos) {
    return qos_port_call(
        "sal_qos_portCos_set", port,
        [&](PortQos& p, bool on) {
            if (cos < 0 || cos > highest_cos)
                return code_bad_value;
            if (!on)
                return code_failed;
            p.cos = static_cast<uint32_t>(cos);
            return code_ok;
        },
        cos);
}

int sal_qos_portTrustState_get(int port, uint32_t* trust) {
    return qos_port_call("sal_qos_portTrustState_get", port, [&](const PortQos& p, bool) {
        *trust = p.trust;
        return code_ok;
    });
}

int sal_qos_portTrustState_set(int port, int trust) {
    return qos_port_call(
        "sal_qos_portTrustState_set", port,
        [&](PortQos& p, bool on) {
            if (trust != 0 && trust != 1)
                return code_bad_value;
            if (!on)
                return code_failed;
            p.trust = trust != 0;
            return code_ok;
        },
        trust);
}
