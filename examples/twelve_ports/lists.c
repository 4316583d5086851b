// Access control lists: named lists of entries in the order of their sequence numbers, bound to
// ports.
#include <string.h>

#include "board.h"
#include "platform/acl.h"

enum { LISTS = 16, ENTRIES = 32 }; // of both types; of one list

struct List {
    char name[ACL_NAME_LENGTH + 1]; // empty: a free place
    uint32_t type;
    uint32_t count;
    Ace entries[ENTRIES];
};

static struct List lists[LISTS];
static struct List* bound[LOGICAL_PORTS][ACL_IPV4 + 1];

static int is_type(uint32_t type) { return type == ACL_MAC || type == ACL_IPV4; }

static struct List* find(const char* name) {
    for (int i = 0; i < LISTS; ++i)
        if (*name && strcmp(lists[i].name, name) == 0)
            return &lists[i];
    return NULL;
}

static struct List* find_of_type(const char* name, uint32_t type) {
    struct List* list = find(name);
    return list && list->type == type ? list : NULL;
}

static int is_bound(const struct List* list) {
    for (int port = 0; port < LOGICAL_PORTS; ++port)
        if (bound[port][list->type] == list)
            return 1;
    return 0;
}

// --- Lists.

static int create(const char* name, uint32_t type) {
    if (find(name))
        return EXISTS;
    for (int i = 0; i < LISTS; ++i)
        if (!lists[i].name[0]) {
            strcpy(lists[i].name, name);
            lists[i].type = type;
            lists[i].count = 0;
            return OK;
        }
    return FULL;
}

int sal_acl_entry_create(const char* name, uint32_t type) {
    if (!*name || strlen(name) > ACL_NAME_LENGTH || !is_type(type))
        return BAD_VALUE;
    lock_board();
    return unlock_board(create(name, type));
}

int sal_acl_entry_del(const char* name, uint32_t type) {
    lock_board();
    struct List* list = find_of_type(name, type);
    if (!list || is_bound(list))
        return unlock_board(list ? BUSY : NOT_FOUND);
    list->name[0] = '\0';
    return unlock_board(OK);
}

int sal_acl_entry_countByType_get(uint32_t type, uint32_t* count) {
    if (!is_type(type))
        return BAD_VALUE;
    lock_board();
    *count = 0;
    for (int i = 0; i < LISTS; ++i)
        *count += lists[i].name[0] && lists[i].type == type;
    return unlock_board(OK);
}

int sal_acl_entry_nameByIdx_get(char* name, uint32_t type, uint32_t index) {
    lock_board();
    for (int i = 0; i < LISTS; ++i)
        if (lists[i].name[0] && lists[i].type == type && index-- == 0) {
            strcpy(name, lists[i].name);
            return unlock_board(OK);
        }
    return unlock_board(NOT_FOUND);
}

int sal_acl_entry_typeByName_get(const char* name, uint32_t* type) {
    lock_board();
    const struct List* list = find(name);
    if (list)
        *type = list->type;
    return unlock_board(list ? OK : NOT_FOUND);
}

// --- Bindings.

int sal_acl_entry_portBinding_get(AclPortBinding* table) {
    lock_board();
    for (int port = 0; port < LOGICAL_PORTS; ++port) {
        memset(&table[port], 0, sizeof table[port]);
        for (uint32_t type = ACL_MAC; type <= ACL_IPV4; ++type)
            if (bound[port][type])
                strcpy(table[port].name[type], bound[port][type]->name);
    }
    return unlock_board(OK);
}

static int are_ports(const PortBitmap* ports) {
    for (int port = LOGICAL_PORTS; port < ACL_PORTS; ++port)
        if (has_bit(ports->words, port))
            return 0;
    return 1;
}

static int bind_list(struct List* list, const PortBitmap* ports) {
    for (int port = 0; port < LOGICAL_PORTS; ++port)
        if (has_bit(ports->words, port) && bound[port][list->type])
            return BUSY;
    for (int port = 0; port < LOGICAL_PORTS; ++port)
        if (has_bit(ports->words, port))
            bound[port][list->type] = list;
    return OK;
}

int sal_acl_entry_bind(const AclPortBinding* binding, PortBitmap ports) {
    if (!is_type(binding->type) || !are_ports(&ports))
        return BAD_VALUE;
    lock_board();
    struct List* list = find_of_type(binding->name[binding->type], binding->type);
    return unlock_board(list && list->count ? bind_list(list, &ports) : NOT_FOUND);
}

int sal_acl_entry_unbind(uint32_t type, PortBitmap ports) {
    if (!is_type(type) || !are_ports(&ports))
        return BAD_VALUE;
    lock_board();
    for (int port = 0; port < LOGICAL_PORTS; ++port)
        if (has_bit(ports.words, port))
            bound[port][type] = NULL;
    return unlock_board(OK);
}

// --- Entries.

int _ace_number_check(uint32_t type) { return is_type(type) ? OK : BAD_VALUE; }

static int is_good_mac(const AceMac* mac) {
    return (!mac->vlan_valid || is_within(mac->vlan, 1, 4094)) &&
           (!mac->ethertype_valid || mac->ethertype >= 0x0600) &&
           (!mac->priority_valid || mac->priority <= 7);
}

// The driver keeps ranges of ports, and this switch has none.
static int is_good_ipv4(const AceIpv4* ipv4) {
    return ipv4->action_valid && (!ipv4->type_of_service_valid || ipv4->type_of_service <= 63) &&
           !ipv4->destination_port.range_valid && !ipv4->source_port.range_valid;
}

static int is_good(const Ace* entry) {
    return is_within(entry->sequence, 1, INT32_MAX) && entry->action <= 1 &&
           (entry->type == ACL_MAC ? is_good_mac(&entry->match.mac)
                                   : is_good_ipv4(&entry->match.ipv4));
}

// Where an entry with that sequence number is, or belongs.
static uint32_t place_of(const struct List* list, uint32_t sequence) {
    uint32_t place = 0;
    while (place < list->count && list->entries[place].sequence < sequence)
        ++place;
    return place;
}

static int has_entry(const struct List* list, uint32_t place, uint32_t sequence) {
    return place < list->count && list->entries[place].sequence == sequence;
}

static int add_entry(struct List* list, const Ace* entry) {
    uint32_t place = place_of(list, entry->sequence);
    if (has_entry(list, place, entry->sequence))
        return EXISTS;
    if (list->count == ENTRIES)
        return FULL;
    Ace* at = &list->entries[place];
    memmove(at + 1, at, (list->count - place) * sizeof *at);
    *at = *entry;
    ++list->count;
    return OK;
}

int sal_ace_entry_create(const char* name, const Ace* entry) {
    if (!is_type(entry->type) || !is_good(entry))
        return BAD_VALUE;
    lock_board();
    struct List* list = find_of_type(name, entry->type);
    if (!list || is_bound(list))
        return unlock_board(list ? BUSY : NOT_FOUND);
    return unlock_board(add_entry(list, entry));
}

int sal_ace_entry_del(const char* name, uint32_t sequence) {
    lock_board();
    struct List* list = find(name);
    if (!list || is_bound(list))
        return unlock_board(list ? BUSY : NOT_FOUND);
    uint32_t place = place_of(list, sequence);
    if (!has_entry(list, place, sequence))
        return unlock_board(NOT_FOUND);
    Ace* at = &list->entries[place];
    memmove(at, at + 1, (--list->count - place) * sizeof *at);
    return unlock_board(OK);
}

int sal_ace_entry_count_get(const char* name, uint32_t type, uint32_t* count) {
    lock_board();
    const struct List* list = find_of_type(name, type);
    if (list)
        *count = list->count;
    return unlock_board(list ? OK : NOT_FOUND);
}

int sal_ace_entry_byIdx_get(const char* name, uint32_t type, uint32_t index, Ace* entry) {
    lock_board();
    const struct List* list = find_of_type(name, type);
    int there = list && index < list->count;
    if (there)
        *entry = list->entries[index];
    return unlock_board(there ? OK : NOT_FOUND);
}

int sal_acl_l4port_range_get(uint8_t index, uint32_t* kind, uint32_t* first, uint32_t* last) {
    (void)index, (void)kind, (void)first, (void)last;
    return NOT_FOUND;
}
