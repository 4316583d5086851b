// The gateway's MAC address is looked for in the ARP table, then its port in the MAC address table.
#include "sections/uplink_port.h"

#include <ctype.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/command.h"
#include "base/errors.h"
#include "base/port_list.h"
#include "json/json_document.h"
#include "platform/l2.h"
#include "platform/system.h"
#include "platform/util.h"

namespace {

enum { GATEWAY_TEXT_SIZE = 16, HEADER_SIZE = 100 + 1, WORD_SIZE = 64 };

// --- The ARP table: a header line, then six words a neighbour.

enum Column { ADDRESS, TYPE, FLAGS, HARDWARE_ADDRESS, MASK, DEVICE };

// The next word; a longer one than any that matters is cut. False at the end of the table.
bool read_word(FILE* table, char word[WORD_SIZE]) {
    int next = getc(table);
    while (isspace(next))
        next = getc(table);
    size_t length = 0;
    for (; next != EOF && !isspace(next); next = getc(table)) {
        if (length < WORD_SIZE - 1)
            word[length++] = static_cast<char>(next);
    }
    word[length] = '\0';
    return length > 0;
}

bool skip_words(FILE* table, int count) {
    char word[WORD_SIZE];
    while (count-- > 0) {
        if (!read_word(table, word))
            return false;
    }
    return true;
}

void find_gateway(FILE* table, const char* gateway, uint8_t* mac) {
    char header[HEADER_SIZE];
    char word[WORD_SIZE];
    if (!fgets(header, sizeof header, table))
        return;
    while (read_word(table, word)) {
        bool found = strcmp(word, gateway) == 0;
        if (!skip_words(table, HARDWARE_ADDRESS - TYPE) || !read_word(table, word))
            return;
        if (found) {
            sn_sys_util_str2Mac(word, mac);
            return;
        }
        if (!skip_words(table, DEVICE + 1 - MASK))
            return;
    }
}

// --- The MAC address table.

// The entry with that address, or the last one. Entry 0 is asked for even of an empty table.
void find_entry(const uint8_t* mac, uint32_t size, MacEntry* entry) {
    uint32_t index = 0;
    do {
        sal_l2_macEntry_get(index, entry);
        if (memcmp(entry->mac, mac, sizeof entry->mac) == 0)
            return;
    } while (++index < size);
}

// The first of an entry's ports, as it stands at the head of their list: no port number has more
// than two digits. Of a list that begins with a run it is the run's first port.
int first_port(const MacEntry& entry) {
    char list[PORT_LIST_SIZE] = "";
    Bitmap2numstr(entry.ports.words, list);
    return atoi(list);
}

int port_of_gateway(FILE* arp_table, const char* gateway, uint32_t addresses) {
    uint8_t mac[MAC_ADDRESS_SIZE] = {};
    find_gateway(arp_table, gateway, mac);
    MacEntry entry = {};
    find_entry(mac, addresses, &entry);
    return first_port(entry);
}

// --- The whole. No call's failure ends the search; what could not be read is not found.

void read_gateway(char text[GATEWAY_TEXT_SIZE]) {
    uint32_t address = 0;
    sal_sys_gateway_get(&address);
    sys_util_ip2Str(address, text);
}

uint32_t refresh_addresses() {
    uint32_t count = 0;
    sal_l2_macTbl_generate(&count);
    count = 0;
    sal_l2_macTbl_size_get(&count);
    return count;
}

} // namespace

int vxc_uplink_port_get(cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    char gateway[GATEWAY_TEXT_SIZE] = "";
    read_gateway(gateway);
    uint32_t addresses = refresh_addresses();
    run_command("cat /proc/net/arp > /tmp/arpinfo");
    int port = 0;
    if (FILE* arp_table = fopen("/tmp/arpinfo", "r")) {
        port = port_of_gateway(arp_table, gateway, addresses);
        fclose(arp_table);
    }
    addJsonObjectIntItem(system, "uplink_port", port);
    return 0;
}
