// The address table is read once; each address goes to the lists of its ports at once.
#include "sections/port/addresses.h"

#include <string.h>

#include "base/ports.h"
#include "json/json_list.h"
#include "platform/l2.h"
#include "platform/system.h"
#include "platform/util.h"

namespace {

void add_address(cJSON** list, const char* text) {
    if (!*list)
        *list = createJsonArray();
    addJsonArrayStringItem(*list, text);
}

int list_entry(MacLists* lists, const PortBitmap& all, const MacEntry* entry) {
    uint32_t is_static = 0;
    if (int code = sal_l2_static_macEntry_search(entry, &is_static))
        return code;
    const PortBitmap ports = intersection(entry->ports, all);
    if (is_static == 1 || is_empty(ports))
        return 0;
    char text[sizeof "FF:FF:FF:FF:FF:FF"] = {};
    if (int code = sys_util_mac2Str(entry->mac, text))
        return code;
    return for_each_port(ports, [&](int port) {
        add_address(&lists->of_port[port], text);
        return 0;
    });
}

} // namespace

int collect_mac_lists(MacLists* lists) {
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

cJSON* take_mac_list(MacLists* lists, int port) {
    cJSON* list = has_room(port) ? lists->of_port[port] : nullptr;
    if (!list)
        return createJsonArray();
    lists->of_port[port] = nullptr;
    return list;
}

void release_mac_lists(MacLists* lists) {
    for (cJSON*& list : lists->of_port) {
        deleteJsonObject(list);
        list = nullptr;
    }
}
