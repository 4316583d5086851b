// A switch whose library says and takes more than the simulated one does: states other than 0 and
// 1, and limits of power that are no limits by class or user.
#pragma once

#include <cstdint>
#include <optional>

// What is set is what the calls answer that succeed.
struct OddSwitch {
    std::optional<std::uint32_t> security; // sal_port_securityEnable_get
    std::optional<std::uint32_t> link;     // sal_port_linkStatus_get
    std::optional<std::uint32_t> enable;   // sal_port_enable_get
    std::optional<std::uint32_t> session;  // sal_mirror_group_targetPort_get
    std::optional<std::uint32_t> sources;  // sal_mirror_group_state_get
    bool takes_any_limit = false;          // sal_poe_power_th_type_config_set

    // What it was given: lists of VLANs to render, and how many of their buffers were not all zero.
    int vlan_lists = 0;
    int used_buffers = 0;

    OddSwitch();
    ~OddSwitch();
    OddSwitch(const OddSwitch&) = delete;
    OddSwitch& operator=(const OddSwitch&) = delete;
};
