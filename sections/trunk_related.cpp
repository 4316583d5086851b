// Rate limits are lifted port by port, addresses looked for in every place of their table.
#include "sections/trunk_related.h"

#include <string.h>

#include "base/port_set.h"
#include "base/ports.h"
#include "platform/l2.h"
#include "platform/rate.h"
#include "platform/system.h"
#include "platform/util.h"

namespace {

enum { MEMBER_RATE_KBPS = 62500 };

int lift_rates(int port) {
    sal_rate_igrBandwidthCtrlRate_set(port, MEMBER_RATE_KBPS);
    sal_rate_egrBandwidthCtrlRate_set(port, MEMBER_RATE_KBPS);
    sal_rate_igrBandwidthCtrlEnable_set(port, 0);
    sal_rate_egrBandwidthCtrlEnable_set(port, 0);
    return 0;
}

bool is_in_use(const MacEntry& entry) {
    static const uint8_t no_mac[MAC_ADDRESS_SIZE] = {};
    return (entry.flags & MAC_ENTRY_IN_USE) && memcmp(entry.mac, no_mac, sizeof no_mac) != 0;
}

bool lies_within(const PortBitmap& ports, const PortBitmap& members) {
    PortBitmap shared = intersection(ports, members);
    return sys_util_bitmaskIsEqual_ret(shared.words, ports.words, sys_logic_port_num_ret());
}

} // namespace

void sn_trunkRelated(PortBitmap members) {
    for_each_port(intersection(members, all_ports()), lift_rates);
    for (uint32_t index = 0; index < STATIC_MAC_ENTRIES; ++index) {
        MacEntry entry = {}; // not in use where it cannot be read
        sal_l2_static_macEntry_get(index, &entry);
        if (is_in_use(entry) && lies_within(entry.ports, members))
            sal_l2_static_macEntry_del(&entry);
    }
}
