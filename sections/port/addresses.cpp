// The address table is read once, then its addresses are sorted by port.
#include "sections/port/addresses.h"

#include <stdlib.h>
#include <string.h>

#include "base/port_set.h"
#include "base/ports.h"
#include "json/json_document.h"
#include "platform/l2.h"
#include "platform/system.h"
#include "platform/util.h"

namespace {

const uint32_t first_room = 64;

} // namespace

struct LearnedMac {
    PortBitmap ports;
    char text[sizeof "FF:FF:FF:FF:FF:FF"];
};

namespace {

// The place for one more address, or null where memory is short.
LearnedMac* next_place(MacLists* lists) {
    if (lists->count == lists->room) {
        uint32_t room = lists->room ? lists->room * 2 : first_room;
        void* larger = realloc(lists->macs, room * sizeof(LearnedMac));
        if (!larger)
            return nullptr;
        lists->macs = static_cast<LearnedMac*>(larger);
        lists->room = room;
    }
    return &lists->macs[lists->count];
}

int list_entry(MacLists* lists, const PortBitmap& ports, const MacEntry* entry) {
    uint32_t is_static = 0;
    if (int code = sal_l2_static_macEntry_search(entry, &is_static))
        return code;
    LearnedMac mac = {intersection(entry->ports, ports), {}};
    if (is_static == 1 || is_empty(mac.ports))
        return 0;
    if (int code = sys_util_mac2Str(entry->mac, mac.text))
        return code;
    if (LearnedMac* place = next_place(lists)) {
        *place = mac;
        ++lists->count;
    }
    return 0;
}

int read_table(MacLists* lists) {
    uint32_t count = 0;
    uint8_t own[MAC_ADDRESS_SIZE] = {};
    if (int code = sal_l2_macTbl_generate(&count))
        return code;
    if (int code = sal_l2_macTbl_size_get(&count))
        return code;
    if (int code = sal_sys_macAddr_get(own))
        return code;
    const PortBitmap ports = all_ports();
    for (uint32_t index = 0; index < count; ++index) {
        MacEntry entry = {};
        if (int code = sal_l2_macEntry_get(index, &entry))
            return code;
        if (memcmp(entry.mac, own, sizeof own) == 0 || (entry.flags & MAC_ENTRY_NOT_LEARNED))
            continue;
        if (int code = list_entry(lists, ports, &entry))
            return code;
    }
    return 0;
}

// Sorts the addresses by port, keeping the table's order: `first` counts each port's addresses,
// then says where its list begins.
void sort_by_port(MacLists* lists) {
    uint32_t* first = lists->first;
    for (uint32_t i = 0; i < lists->count; ++i)
        for_each_port(lists->macs[i].ports, [first](int port) {
            ++first[port + 1];
            return 0;
        });
    for (int port = 0; port < PORT_SET_SIZE; ++port)
        first[port + 1] += first[port];

    lists->texts = static_cast<const char**>(calloc(first[PORT_SET_SIZE] + 1, sizeof(char*)));
    if (!lists->texts)
        return;
    uint32_t next[PORT_SET_SIZE];
    memcpy(next, first, sizeof next);
    for (uint32_t i = 0; i < lists->count; ++i) {
        const LearnedMac& mac = lists->macs[i];
        for_each_port(mac.ports, [&](int port) {
            lists->texts[next[port]++] = mac.text;
            return 0;
        });
    }
}

} // namespace

int collect_mac_lists(MacLists* lists) {
    if (int code = read_table(lists))
        return code;
    sort_by_port(lists);
    return 0;
}

cJSON* create_mac_list(const MacLists* lists, int port) {
    if (!lists->texts || port >= PORT_SET_SIZE)
        return createJsonArray();
    const uint32_t* first = &lists->first[port];
    return createJsonStringArray(lists->texts + first[0], static_cast<int>(first[1] - first[0]));
}

void release_mac_lists(MacLists* lists) {
    free(lists->texts);
    free(lists->macs);
    *lists = {};
}
