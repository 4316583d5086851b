// The families, in the order in which they are judged.
#include "judge/family.h"

namespace judge {

const std::vector<const Family*>& families() {
    static const std::vector<const Family*> all = {
        &system_family,   &switch_family,  &port_family, &rate_family,       &mib_family,
        &poe_family,      &led_family,     &vlan_family, &voice_vlan_family, &l2_family,
        &trunk_family,    &mirror_family,  &qos_family,  &acl_family,        &stp_family,
        &igmp_family,     &lldp_family,    &snmp_family, &access_family,     &diag_family,
        &firmware_family, &vxcloud_family, &util_family, &log_family};
    return all;
}

const Operations& all_reads() {
    static const Operations all = [] {
        Operations joined;
        for (const Family* family : families())
            if (family->reads)
                for (Operation& operation : family->reads())
                    joined.push_back(std::move(operation));
        return joined;
    }();
    return all;
}

} // namespace judge
