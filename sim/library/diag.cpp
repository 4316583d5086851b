// Platform library: cable tests and the lock around traceroute.
#include "platform/diag.h"

#include "driver/cablediag.h"
#include "platform/trunk.h"
#include "sim/library/call.h"

using namespace sim;

int sal_cablediag_copper_set(int port) {
    return call(
        "sal_cablediag_copper_set",
        [&](Switch& s) -> int {
            if (port < 0 || port >= s.logical_ports() - TRUNK_GROUPS)
                return code_no_port;
            return rsd_cablediag_copper_set(static_cast<uint32_t>(port));
        },
        port);
}

namespace {

int locked(const Switch& s) {
    return s.diag.traceroute_elsewhere || s.diag.traceroute_locked ? code_busy : code_ok;
}

} // namespace

int sal_sys_tracerouteLock_check(void) { return call("sal_sys_tracerouteLock_check", locked); }

int sal_sys_tracerouteLock_take(void) {
    return call("sal_sys_tracerouteLock_take", [](Switch& s) {
        int code = locked(s);
        s.diag.traceroute_locked = true;
        return code;
    });
}

int sal_sys_tracerouteLock_give(void) {
    return call("sal_sys_tracerouteLock_give", [](Switch& s) -> int {
        if (!s.diag.traceroute_locked)
            return code_failed;
        s.diag.traceroute_locked = false;
        return code_ok;
    });
}
