// Each call is the simulated library's own, and its answer is changed afterwards.
#include "tests/sections/odd_switch.h"

#include <algorithm>

#include "platform/mirror.h"
#include "platform/poe.h"
#include "platform/port.h"
#include "platform/vlan.h"

namespace {

OddSwitch* odd; // null while the switch is as it always is

int answer(int code, std::uint32_t* value, std::optional<std::uint32_t> OddSwitch::*member) {
    if (odd && code == 0)
        *value = (odd->*member).value_or(*value);
    return code;
}

} // namespace

OddSwitch::OddSwitch() { odd = this; }
OddSwitch::~OddSwitch() { odd = nullptr; }

extern "C" {

decltype(sal_port_securityEnable_get) __real_sal_port_securityEnable_get,
    __wrap_sal_port_securityEnable_get;
decltype(sal_port_linkStatus_get) __real_sal_port_linkStatus_get, __wrap_sal_port_linkStatus_get;
decltype(sal_port_enable_get) __real_sal_port_enable_get, __wrap_sal_port_enable_get;
decltype(sal_mirror_group_targetPort_get) __real_sal_mirror_group_targetPort_get,
    __wrap_sal_mirror_group_targetPort_get;
decltype(sal_mirror_group_state_get) __real_sal_mirror_group_state_get,
    __wrap_sal_mirror_group_state_get;
decltype(sal_poe_power_th_type_config_set) __real_sal_poe_power_th_type_config_set,
    __wrap_sal_poe_power_th_type_config_set;
decltype(sys_util_vlanmask2Str) __real_sys_util_vlanmask2Str, __wrap_sys_util_vlanmask2Str;

int __wrap_sal_port_securityEnable_get(int port, std::uint32_t* enable) {
    return answer(__real_sal_port_securityEnable_get(port, enable), enable, &OddSwitch::security);
}

int __wrap_sal_port_linkStatus_get(int port, std::uint32_t* status) {
    return answer(__real_sal_port_linkStatus_get(port, status), status, &OddSwitch::link);
}

int __wrap_sal_port_enable_get(int port, std::uint32_t* enable) {
    return answer(__real_sal_port_enable_get(port, enable), enable, &OddSwitch::enable);
}

int __wrap_sal_mirror_group_targetPort_get(int group, int* target, std::uint32_t* state) {
    return answer(
        __real_sal_mirror_group_targetPort_get(group, target, state), state, &OddSwitch::session);
}

int __wrap_sal_mirror_group_state_get(int group, std::uint32_t* state) {
    return answer(__real_sal_mirror_group_state_get(group, state), state, &OddSwitch::sources);
}

int __wrap_sal_poe_power_th_type_config_set(std::uint8_t port, std::uint8_t limit_type) {
    int code = __real_sal_poe_power_th_type_config_set(port, limit_type);
    return odd && odd->takes_any_limit ? 0 : code;
}

int __wrap_sys_util_vlanmask2Str(const VlanMask* vlans, char* text) {
    if (odd) {
        ++odd->vlan_lists;
        odd->used_buffers += std::any_of(text, text + VLAN_TEXT_SIZE, [](char c) { return c; });
    }
    return __real_sys_util_vlanmask2Str(vlans, text);
}

} // extern "C"
