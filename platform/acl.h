// Platform library: access control lists - named lists of entries that permit or deny frames, and
// their bindings to ports.
//
// A list has a type, ACL_MAC or ACL_IPV4, and a name of 1 to 32 characters, unique among the lists
// of both types. A port has at most one list of each type bound to it. While a list is bound, the
// list itself and its entries cannot be changed; an empty list cannot be bound.
//
// Every call returns 0 or a platform code; a failing one changes nothing and leaves its outputs
// unchanged. Names are NUL-terminated; a longer one than 32 characters is refused. Counts and
// indices are stable until the next change.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
    ACL_MAC = 1,
    ACL_IPV4 = 2,
    ACL_NAME_LENGTH = 32,               // characters, without the terminator
    ACL_PORTS = PORT_BITMAP_WORDS * 32, // logical ports that a table of bindings has room for
};

// The lists that are bound to one port: name[type] is empty when no list of that type is.
// `type` matters to sal_acl_entry_bind alone: it tells which of the names is meant.
typedef struct AclPortBinding {
    uint8_t leading;                              // the library's own
    char name[ACL_IPV4 + 1][ACL_NAME_LENGTH + 1]; // by type; name[0] is not used
    uint32_t type;
} AclPortBinding;

static_assert(offsetof(AclPortBinding, name) == 1, "names follow the leading byte");
static_assert(sizeof(((AclPortBinding*)0)->name[0]) == 33, "a name field");
static_assert(offsetof(AclPortBinding, type) == 100, "the type follows the names");
static_assert(sizeof(AclPortBinding) == 104, "one record a port");

// What an entry of a MAC list matches. A field counts only while its _valid is 1; otherwise it
// matches anything. Set bits of a mask are compared.
typedef struct AceMac {
    uint8_t destination_mac[MAC_ADDRESS_SIZE];
    uint8_t source_mac[MAC_ADDRESS_SIZE];
    uint8_t destination_mask[MAC_ADDRESS_SIZE];
    uint8_t source_mask[MAC_ADDRESS_SIZE];
    uint16_t vlan;      // 1 to 4094
    uint16_t ethertype; // 0x0600 to 0xFFFF
    uint8_t priority;   // 802.1p, 0 to 7
    uint8_t priority_mask;
    uint8_t source_mac_valid;
    uint8_t destination_mac_valid;
    uint8_t vlan_valid;
    uint8_t ethertype_valid;
    uint8_t priority_valid;
} AceMac;

// One end of a connection: a single layer-4 port or a range of them, not both.
typedef struct AceL4Port {
    uint16_t port; // 0 to 65535
    uint8_t range; // index that rsd_acl_l4port_range_set gave
    uint8_t port_valid;
    uint8_t range_valid;
    uint8_t reserved;
} AceL4Port;

// What an entry of an IPv4 list matches. Addresses have their most significant byte first in the
// number.
typedef struct AceIpv4 {
    uint32_t destination_ip;
    uint32_t source_ip;
    uint32_t destination_mask;
    uint32_t source_mask;
    AceL4Port destination_port;
    AceL4Port source_port;
    uint8_t protocol;
    uint8_t type_of_service; // 0 to 63
    uint8_t icmp_type;
    uint8_t icmp_code;
    uint8_t tcp_flags;      // URG 32, ACK 16, PSH 8, RST 4, SYN 2, FIN 1
    uint8_t tcp_flags_mask; // the flags that are compared
    uint8_t action_valid;   // 1 in every entry of a list
    uint8_t destination_ip_valid;
    uint8_t source_ip_valid;
    uint8_t protocol_valid;
    uint8_t type_of_service_valid;
    uint8_t icmp_type_valid;
    uint8_t icmp_code_valid;
    uint8_t tcp_flags_valid;
} AceIpv4;

// An entry of a list. Entries are looked at in the order of their sequence numbers.
typedef struct Ace {
    uint32_t sequence; // 1 to 2147483647, unique within a list
    uint32_t action;   // 0 deny, 1 permit
    union {
        AceMac mac;
        AceIpv4 ipv4;
    } match;
    uint32_t type; // ACL_MAC or ACL_IPV4: that of its list, and which of the two `match` holds
} Ace;

static_assert(offsetof(Ace, action) == 4, "sequence, action, match");
static_assert(offsetof(Ace, match) == 8, "sequence, action, match");
static_assert(offsetof(AceMac, source_mac) == 6, "addresses first, then their masks");
static_assert(offsetof(AceMac, destination_mask) == 12, "addresses first, then their masks");
static_assert(offsetof(AceMac, source_mask) == 18, "addresses first, then their masks");
static_assert(offsetof(AceMac, vlan) == 24, "the VLAN follows the masks");
static_assert(offsetof(AceMac, ethertype) == 26, "the ethertype follows the VLAN");
static_assert(offsetof(AceMac, priority) == 28, "the priority follows the ethertype");
static_assert(offsetof(AceMac, source_mac_valid) == 30, "the flags come last");
static_assert(offsetof(AceMac, priority_valid) == 34, "the flags come last");

// Creates an empty list; a name that is taken and a full table are refused. Deletes a list with its
// entries; one that is bound to a port is refused.
int sal_acl_entry_create(const char* name, uint32_t type);
int sal_acl_entry_del(const char* name, uint32_t type);

// Number of lists of a type; the name of list `index` of them, from 0. `name` holds 33 bytes.
int sal_acl_entry_countByType_get(uint32_t type, uint32_t* count);
int sal_acl_entry_nameByIdx_get(char* name, uint32_t type, uint32_t index);

// The type of the list with this name.
int sal_acl_entry_typeByName_get(const char* name, uint32_t* type);

// The bindings of all ports: one record per logical port, into a table with room for ACL_PORTS.
int sal_acl_entry_portBinding_get(AclPortBinding* table);

// Binds the list binding->name[binding->type] to each of `ports`. Refused: a list that is empty or
// of another type, a port to which a list of that type is bound already.
int sal_acl_entry_bind(const AclPortBinding* binding, PortBitmap ports);

// Takes the list of a type off each of `ports`; a port without one is left as it is.
int sal_acl_entry_unbind(uint32_t type, PortBitmap ports);

// Whether there is room for one more entry of a type: 0, -1 when there is none, or a platform code.
int _ace_number_check(uint32_t type);

// Adds an entry to a list of its type. Refused: a sequence number that the list has already, a
// value out of range, a full table. Deletes the entry of a sequence number.
//
// A layer-4 port range is the driver's. It lives at least as long as an entry refers to it; equal
// ranges are one, with one index. Nobody has to release a range: when the driver needs room, it
// gives the place of a range to which no entry refers to a new one, though never the place of the
// range that was set last. So an entry may be deleted and created again, and the two ranges of a
// new entry may be set before it is created.
int sal_ace_entry_create(const char* name, const Ace* entry);
int sal_ace_entry_del(const char* name, uint32_t sequence);

// Number of entries of a list; entry `index` of them, from 0, in the order of their sequence.
int sal_ace_entry_count_get(const char* name, uint32_t type, uint32_t* count);
int sal_ace_entry_byIdx_get(const char* name, uint32_t type, uint32_t index, Ace* entry);

// The first and last port of a layer-4 port range; `kind` is 1 for TCP, 2 for any other protocol.
int sal_acl_l4port_range_get(uint8_t index, uint32_t* kind, uint32_t* first, uint32_t* last);

#ifdef __cplusplus
}
#endif
