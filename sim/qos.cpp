// Platform library: quality of service.
#include "sim/qos.h"

#include "platform/qos.h"
#include "sim/call.h"

namespace sim {

namespace {

constexpr int highest_cos = 7;

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

void Qos::config(Fields& f) {
    f.boolean("on", on);
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
