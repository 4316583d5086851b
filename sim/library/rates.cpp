// Platform library: bandwidth limits.
#include "sim/library/rates.h"

#include "platform/rate.h"
#include "sim/library/call.h"

namespace sim {

namespace {

template <class Body, class... Arguments>
int rate_call(
    const char* name, int port, RateLimit PortRates::*side, Body body,
    const Arguments&... arguments) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            return body(s.rates.ports[static_cast<std::size_t>(port)].*side);
        },
        port, arguments...);
}

int enable_get(const char* name, int port, RateLimit PortRates::*side, uint32_t* enable) {
    return rate_call(name, port, side, [&](const RateLimit& limit) {
        *enable = limit.enable;
        return code_ok;
    });
}

int enable_set(const char* name, int port, RateLimit PortRates::*side, int enable) {
    return rate_call(
        name, port, side,
        [&](RateLimit& limit) {
            if (enable != 0 && enable != 1)
                return code_bad_value;
            limit.enable = enable != 0;
            return code_ok;
        },
        enable);
}

int rate_get(const char* name, int port, RateLimit PortRates::*side, uint32_t* kbps) {
    return rate_call(name, port, side, [&](const RateLimit& limit) {
        *kbps = limit.kbps;
        return code_ok;
    });
}

int rate_set(const char* name, int port, RateLimit PortRates::*side, int kbps) {
    return rate_call(
        name, port, side,
        [&](RateLimit& limit) {
            if (kbps < RATE_LOWEST || kbps > RATE_UNLIMITED)
                return code_bad_value;
            limit.kbps = static_cast<uint32_t>(kbps);
            return code_ok;
        },
        kbps);
}

constexpr auto ingress = &PortRates::ingress;
constexpr auto egress = &PortRates::egress;

} // namespace

void RateLimit::fields(Fields& f) {
    f.boolean("enable", enable);
    f.integer("kbps", kbps, RATE_LOWEST, RATE_UNLIMITED);
}

void PortRates::fields(Fields& f) {
    f.object("ingress", ingress);
    f.object("egress", egress);
}

} // namespace sim

using namespace sim;

int sal_rate_igrBandwidthCtrlEnable_get(int port, uint32_t* enable) {
    return enable_get("sal_rate_igrBandwidthCtrlEnable_get", port, sim::ingress, enable);
}

int sal_rate_igrBandwidthCtrlEnable_set(int port, int enable) {
    return enable_set("sal_rate_igrBandwidthCtrlEnable_set", port, sim::ingress, enable);
}

int sal_rate_egrBandwidthCtrlEnable_get(int port, uint32_t* enable) {
    return enable_get("sal_rate_egrBandwidthCtrlEnable_get", port, sim::egress, enable);
}

int sal_rate_egrBandwidthCtrlEnable_set(int port, int enable) {
    return enable_set("sal_rate_egrBandwidthCtrlEnable_set", port, sim::egress, enable);
}

int sal_rate_igrBandwidthCtrlRate_get(int port, uint32_t* kbps) {
    return rate_get("sal_rate_igrBandwidthCtrlRate_get", port, sim::ingress, kbps);
}

int sal_rate_igrBandwidthCtrlRate_set(int port, int kbps) {
    return rate_set("sal_rate_igrBandwidthCtrlRate_set", port, sim::ingress, kbps);
}

int sal_rate_egrBandwidthCtrlRate_get(int port, uint32_t* kbps) {
    return rate_get("sal_rate_egrBandwidthCtrlRate_get", port, sim::egress, kbps);
}

int sal_rate_egrBandwidthCtrlRate_set(int port, int kbps) {
    return rate_set("sal_rate_egrBandwidthCtrlRate_set", port, sim::egress, kbps);
}
