// Platform library: the management services and their processes.
#include "sim/library/access.h"

#include <string_view>

#include "platform/access.h"
#include "sim/library/call.h"

namespace sim {

namespace {

constexpr int most_connections = 16;

int state_get(const char* name, bool Access::*state, uint32_t* enable) {
    return call(name, [&](Switch& s) {
        *enable = s.access.*state;
        return code_ok;
    });
}

int state_set(const char* name, bool Access::*state, int enable) {
    return call(
        name,
        [&](Switch& s) {
            if (enable != 0 && enable != 1)
                return code_bad_value;
            s.access.*state = enable == 1;
            return code_ok;
        },
        enable);
}

} // namespace

void Access::hardware(Fields& f) {
    f.integer("telnet_connections", telnet_connections, 0, most_connections);
    f.integer("ssh_connections", ssh_connections, 0, most_connections);
}

void Access::config(Fields& f) {
    f.boolean("http", http);
    f.boolean("https", https);
    f.boolean("telnet", telnet);
    f.boolean("ssh", ssh);
    if (f.reading())
        written = running = {telnet, ssh};
}

} // namespace sim

using namespace sim;

int sal_sys_httpEnable_get(uint32_t* enable) {
    return state_get("sal_sys_httpEnable_get", &Access::http, enable);
}

int sal_sys_httpEnable_set(int enable) {
    return state_set("sal_sys_httpEnable_set", &Access::http, enable);
}

int sal_sys_httpsEnable_set(int enable) {
    return state_set("sal_sys_httpsEnable_set", &Access::https, enable);
}

int sal_sys_telnetdEnable_get(uint32_t* enable) {
    return state_get("sal_sys_telnetdEnable_get", &Access::telnet, enable);
}

int sal_sys_telnetdEnable_set(int enable) {
    return state_set("sal_sys_telnetdEnable_set", &Access::telnet, enable);
}

int sal_ssh_sshdEnable_get(uint32_t* enable) {
    return state_get("sal_ssh_sshdEnable_get", &Access::ssh, enable);
}

int sal_ssh_sshdEnable_set(int enable) {
    return state_set("sal_ssh_sshdEnable_set", &Access::ssh, enable);
}

int sal_sys_inetdConfig_set(void) {
    return call("sal_sys_inetdConfig_set", [](Switch& s) {
        s.access.written = {s.access.telnet, s.access.ssh};
        return code_ok;
    });
}

int sal_inetd_restart(void) {
    return call("sal_inetd_restart", [](Switch& s) {
        s.access.running = s.access.written;
        return code_ok;
    });
}

int sal_util_process_kill(const char* name) {
    return call(
        "sal_util_process_kill",
        [&](Switch& s) {
            if (!name || !*name)
                return code_null;
            // How the server of an open connection names itself.
            if (std::string_view("/bin/sshd: admin@pts/0").find(name) != std::string_view::npos)
                s.access.ssh_connections = 0;
            return code_ok;
        },
        name);
}
