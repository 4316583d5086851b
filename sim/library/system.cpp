// Platform library: the switch as a whole, and its system log.
#include "sim/library/system.h"

#include <cstring>

#include "platform/log.h"
#include "platform/system.h"
#include "sim/library/call.h"

namespace sim {

namespace {

// What the firmware's name field holds; the agent itself sets no limit.
constexpr std::size_t longest_name = 64;

} // namespace

void System::hardware(Fields& f) {
    f.mac("mac", mac);
    f.text("firmware_version", firmware_version, 32);
}

void System::config(Fields& f) {
    f.text("name", name, longest_name);
    f.ipv4("address", address);
    f.ipv4("mask", mask);
    f.ipv4("gateway", gateway);
}

} // namespace sim

using namespace sim;

int sys_logic_port_num_ret(void) {
    return value("sys_logic_port_num_ret", [](Switch& s) { return s.logical_ports(); });
}

int sal_sys_macAddr_get(uint8_t* mac) {
    return call("sal_sys_macAddr_get", [&](Switch& s) {
        std::memcpy(mac, s.system.mac, sizeof s.system.mac);
        return code_ok;
    });
}

int sal_sys_systemName_get(char* name) {
    return call("sal_sys_systemName_get", [&](Switch& s) {
        copy_text(name, 256, s.system.name);
        return code_ok;
    });
}

int sal_sys_systemName_set(const char* name) {
    return call(
        "sal_sys_systemName_set",
        [&](Switch& s) -> int {
            if (!name)
                return code_null;
            if (std::strlen(name) > longest_name)
                return code_too_long;
            s.system.name = name;
            return code_ok;
        },
        name);
}

const char* fds_sys_version_ret(void) {
    return value(
        "fds_sys_version_ret", [](Switch& s) { return s.system.firmware_version.c_str(); });
}

int sal_sys_systemUptime_get(uint32_t* hundredths) {
    return call("sal_sys_systemUptime_get", [&](Switch&) {
        *hundredths = static_cast<uint32_t>(board().clock.running() * 100);
        return code_ok;
    });
}

int sal_sys_ip_get(uint32_t* address, uint32_t* mask) {
    return call("sal_sys_ip_get", [&](Switch& s) {
        *address = s.system.address;
        *mask = s.system.mask;
        return code_ok;
    });
}

int sal_sys_gateway_get(uint32_t* address) {
    return call("sal_sys_gateway_get", [&](Switch& s) {
        *address = s.system.gateway;
        return code_ok;
    });
}

int cmd_conf_startupConfig_save(void) {
    return call("cmd_conf_startupConfig_save", [](Switch&) -> int {
        return board().save_startup_config() ? code_ok : code_failed;
    });
}

int sal_sys_reboot(void) {
    return call("sal_sys_reboot", [](Switch&) {
        board().reboot();
        return code_ok;
    });
}

int sys_log(int facility, int level, const char* text) {
    return call(
        "sys_log",
        [&](Switch&) {
            board().add_log(text);
            return code_ok;
        },
        facility, level, text);
}
