// A family of the contract, one header of platform/: its getters and settings as tables, and what
// no table can say as functions.
#pragma once

#include <string>
#include <vector>

#include "judge/operation.h"
#include "judge/setting.h"

namespace judge {

struct Family {
    const char* name; // of the header, without folder and ending
    Operations (*reads)() = nullptr;
    void (*agreement)() = nullptr; // what must agree between calls
    Settings (*settings)() = nullptr;
    void (*changes)() = nullptr; // what is created, joined and taken away again
};

extern const Family system_family;
extern const Family switch_family;
extern const Family port_family;
extern const Family rate_family;
extern const Family mib_family;
extern const Family poe_family;
extern const Family led_family;
extern const Family vlan_family;
extern const Family voice_vlan_family;
extern const Family l2_family;
extern const Family trunk_family;
extern const Family mirror_family;
extern const Family qos_family;
extern const Family acl_family;
extern const Family stp_family;
extern const Family igmp_family;
extern const Family lldp_family;
extern const Family snmp_family;
extern const Family access_family;
extern const Family diag_family;
extern const Family firmware_family;
extern const Family vxcloud_family;
extern const Family util_family;
extern const Family log_family;

const std::vector<const Family*>& families();

// The getters of all families.
const Operations& all_reads();

} // namespace judge
