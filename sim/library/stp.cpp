// Platform library: spanning tree.
#include "sim/library/stp.h"

#include <cstring>

#include "platform/stp.h"
#include "sim/library/call.h"

namespace sim {

namespace {

bool is_force_version(int version) {
    return version == STP_FORCE_STP || version == STP_FORCE_RSTP || version == STP_FORCE_MSTP;
}

bool is_priority(int priority) {
    return priority >= 0 && priority <= STP_HIGHEST_PRIORITY && priority % STP_PRIORITY_STEP == 0;
}

// The root is the bridge with the lower identifier: priority first, then address.
bool is_own_root(const Switch& s) {
    if (!s.stp.enable || !s.stp.root.heard)
        return true;
    if (s.stp.root.priority != s.stp.priority)
        return s.stp.priority < s.stp.root.priority;
    return std::memcmp(s.system.mac, s.stp.root.mac, MAC_ADDRESS_SIZE) < 0;
}

void fill_root(const Switch& s, StpInstance& info) {
    bool own = is_own_root(s);
    info.root_priority = own ? static_cast<uint16_t>(s.stp.priority) : s.stp.root.priority;
    std::memcpy(info.root_mac, own ? s.system.mac : s.stp.root.mac, MAC_ADDRESS_SIZE);
    info.root_path_cost = own ? 0 : s.stp.root.path_cost;
    info.root_port = own ? std::uint16_t{0} : s.stp.root.port;
}

} // namespace

void StpRoot::fields(Fields& f) {
    f.boolean("heard", heard);
    f.integer("priority", priority, 0, UINT16_MAX);
    f.mac("mac", mac);
    f.integer("path_cost", path_cost, 0, UINT32_MAX);
    f.integer("port", port, 0, UINT16_MAX);
}

void Stp::hardware(Fields& f) { f.object("root", root); }

void Stp::config(Fields& f) {
    f.boolean("enable", enable);
    f.integer("force_version", force_version, STP_FORCE_STP, STP_FORCE_MSTP);
    f.integer("priority", priority, 0, STP_HIGHEST_PRIORITY);
    f.integer("hello_time", hello_time, 1, 10);
    f.integer("maximum_age", maximum_age, 6, 40);
    f.integer("forward_delay", forward_delay, 4, 30);
    if (f.reading() && !is_force_version(force_version))
        f.refuse("force_version must be 0, 2 or 3");
    if (f.reading() && !is_priority(priority))
        f.refuse("priority must be a multiple of 4096");
}

} // namespace sim

using namespace sim;

int sal_stp_info_get(StpInfo* info) {
    return call("sal_stp_info_get", [&](Switch& s) {
        *info = {};
        info->enable = s.stp.enable;
        info->force_version = static_cast<uint8_t>(s.stp.force_version);
        return code_ok;
    });
}

int sal_stp_mstInfo_get(int instance, StpInstance* info) {
    return call(
        "sal_stp_mstInfo_get",
        [&](Switch& s) {
            if (instance != STP_COMMON_INSTANCE)
                return code_bad_value;
            *info = {};
            info->priority = static_cast<uint16_t>(s.stp.priority);
            info->hello_time = static_cast<uint16_t>(s.stp.hello_time);
            info->maximum_age = static_cast<uint16_t>(s.stp.maximum_age);
            info->forward_delay = static_cast<uint16_t>(s.stp.forward_delay);
            fill_root(s, *info);
            return code_ok;
        },
        instance);
}

int sal_stp_enable_set(int enable) {
    return call(
        "sal_stp_enable_set",
        [&](Switch& s) {
            if (enable != 0 && enable != 1)
                return code_bad_value;
            s.stp.enable = enable == 1;
            return code_ok;
        },
        enable);
}

int sal_stp_forceVersion_set(int version) {
    return call(
        "sal_stp_forceVersion_set",
        [&](Switch& s) {
            if (!is_force_version(version))
                return code_bad_value;
            s.stp.force_version = version;
            return code_ok;
        },
        version);
}

int sal_stp_priority_set(int priority) {
    return call(
        "sal_stp_priority_set",
        [&](Switch& s) {
            if (!is_priority(priority))
                return code_bad_value;
            s.stp.priority = priority;
            return code_ok;
        },
        priority);
}
