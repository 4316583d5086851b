// What a new aggregation group takes away from its members; see trunk_related.h.
#include "sections/trunk_related.h"

#include <string.h>

#include "platform/l2.h"
#include "platform/rate.h"
#include "platform/system.h"
#include "platform/util.h"
#include "sections/trunk_ports.h"

namespace {

enum { MEMBER_RATE_KBPS = 62500 };

void rates_lift(int port) {
    sal_rate_igrBandwidthCtrlRate_set(port, MEMBER_RATE_KBPS);
    sal_rate_egrBandwidthCtrlRate_set(port, MEMBER_RATE_KBPS);
    sal_rate_igrBandwidthCtrlEnable_set(port, 0);
    sal_rate_egrBandwidthCtrlEnable_set(port, 0);
}

bool in_use(const MacEntry& entry) {
    static const uint8_t no_mac[MAC_ADDRESS_SIZE] = {};
    return (entry.flags & MAC_ENTRY_IN_USE) && memcmp(entry.mac, no_mac, sizeof no_mac);
}

bool lies_within(const PortBitmap& ports, const PortBitmap& members) {
    PortBitmap shared;
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word)
        shared.words[word] = ports.words[word] & members.words[word];
    return sys_util_bitmaskIsEqual_ret(shared.words, ports.words, sys_logic_port_num_ret());
}

} // namespace

void sn_trunkRelated(PortBitmap members) {
    for_each_port(members, [](int port) {
        rates_lift(port);
        return 0;
    });
    for (uint32_t index = 0; index < STATIC_MAC_ENTRIES; ++index) {
        MacEntry entry = {}; // not in use where it cannot be read
        sal_l2_static_macEntry_get(index, &entry);
        if (in_use(entry) && lies_within(entry.ports, members))
            sal_l2_static_macEntry_del(&entry);
    }
}
