// Access control lists: lists, their bindings, their entries, and layer-4 port ranges.
// Commands from 256 on.
//
// A list has a kind: 1 MAC, 2 IPv4. A name is NUL-terminated, at most 32 characters; a longer one
// is cut.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
    ACL_NAME_SIZE = 33,    // with the terminator
    ACL_BINDING_KINDS = 3, // kinds 0 (unused) to 2
};

// A range of layer-4 ports, shared by the entries that refer to it. 16 bytes.
typedef struct AclPortRange {
    uint32_t kind;  // 1 TCP, 2 any other protocol
    uint32_t first; // 0 to 65535
    uint32_t last;  // first to 65535
    uint32_t users; // the driver's own; 0 in a range that is written
} AclPortRange;

// An entry of a list. A match is made only of the fields whose flag in `valid` is set. 72 bytes.
typedef struct AclEntry {
    uint32_t sequence;
    uint32_t action; // 0 deny, 1 permit
    uint32_t valid;  // ACL_VALID_...
    uint8_t destination_mac[6], destination_mac_mask[6];
    uint8_t source_mac[6], source_mac_mask[6];
    uint16_t vlan;
    uint16_t ethertype;
    uint8_t priority, priority_mask;
    uint8_t protocol;
    uint8_t type_of_service;
    uint32_t destination_ip, destination_ip_mask; // most significant byte first in the number
    uint32_t source_ip, source_ip_mask;
    uint16_t destination_port, source_port;
    uint8_t destination_range, source_range; // indices of layer-4 port ranges
    uint8_t icmp_type, icmp_code;
    uint8_t tcp_flags, tcp_flags_mask;
    uint8_t reserved[2];
} AclEntry;

enum {
    ACL_VALID_DESTINATION_MAC = 1 << 0,
    ACL_VALID_SOURCE_MAC = 1 << 1,
    ACL_VALID_VLAN = 1 << 2,
    ACL_VALID_ETHERTYPE = 1 << 3,
    ACL_VALID_PRIORITY = 1 << 4,
    ACL_VALID_PROTOCOL = 1 << 5,
    ACL_VALID_TYPE_OF_SERVICE = 1 << 6,
    ACL_VALID_DESTINATION_IP = 1 << 7,
    ACL_VALID_SOURCE_IP = 1 << 8,
    ACL_VALID_DESTINATION_PORT = 1 << 9,
    ACL_VALID_SOURCE_PORT = 1 << 10,
    ACL_VALID_DESTINATION_RANGE = 1 << 11,
    ACL_VALID_SOURCE_RANGE = 1 << 12,
    ACL_VALID_ICMP_TYPE = 1 << 13,
    ACL_VALID_ICMP_CODE = 1 << 14,
    ACL_VALID_TCP_FLAGS = 1 << 15,
};

// The lists bound to a port, one name a kind; an empty name is no binding. 104 bytes.
typedef struct AclBinding {
    uint32_t kind; // the kind that a bind request is about
    char name[ACL_BINDING_KINDS][ACL_NAME_SIZE];
    uint8_t reserved;
} AclBinding;

// Filter engine entries in use and in all. 8 bytes.
typedef struct AclUsage {
    uint32_t used;
    uint32_t total;
} AclUsage;

// The driver's record for this group, 336 bytes. Every request fills the members it needs; the
// rest is zero.
typedef struct AclRecord {
    char name[ACL_NAME_SIZE];
    uint8_t reserved0[3];
    uint32_t kind;
    uint32_t port;
    uint32_t index;    // of a list within its kind, of an entry within its list
    uint32_t sequence; // of an entry
    uint32_t count;    // lists or entries
    PortBitmap ports;
    AclEntry entry;
    AclBinding binding;
    AclUsage usage;
    uint8_t reserved1[24];
    AclPortRange range;
    uint8_t reserved2[4];
    uint8_t range_index;
    uint8_t reserved3[39];
} AclRecord;

// Creates an empty list, deletes a list that no port uses.
int rsd_acl_entry_create(const char* name, uint32_t kind);
int rsd_acl_entry_del(const char* name, uint32_t kind);

// Binds the list named in `binding` (its kind, and the name of that kind) to a set of ports; takes
// the list of a kind off a set of ports.
int rsd_acl_entry_bind(const AclBinding* binding, const PortBitmap* ports);
int rsd_acl_entry_unbind(uint32_t kind, const PortBitmap* ports);

// Adds an entry to a list, replaces the entry with the same sequence, deletes an entry.
int rsd_acl_ace_entry_create(const char* name, const AclEntry* entry);
int rsd_acl_ace_entry_modify(const char* name, const AclEntry* entry);
int rsd_acl_ace_entry_del(const char* name, uint32_t sequence);

// Number of lists of a kind, and their names by index from 0; `name` holds ACL_NAME_SIZE bytes.
int rsd_acl_entry_countByType_get(uint32_t kind, uint32_t* count);
int rsd_acl_entry_nameByIdx_get(char* name, uint32_t kind, uint32_t index);

// Kind of the list with this name.
int rsd_acl_entry_typeByName_get(const char* name, uint32_t* kind);

// Lists bound to a logical port; `kind` in the result is of no meaning.
int rsd_acl_entry_portBinding_get(uint32_t port, AclBinding* binding);

// Number of entries of a list, and the entries by index from 0, in the order of their sequence.
int rsd_ace_entry_count_get(const char* name, uint32_t kind, uint32_t* count);
int rsd_ace_entry_byIdx_get(const char* name, uint32_t kind, uint32_t index, AclEntry* entry);

// A layer-4 port range: the driver chooses the index, hands it back, and takes it again to read or
// to delete the range.
int rsd_acl_l4port_range_set(const AclPortRange* range, uint8_t* index);
int rsd_acl_l4port_range_get(AclPortRange* range, uint8_t index);
int rsd_acl_l4port_range_del(uint8_t index);

// Use of the filter engine.
int rsd_acl_pieUsage_get(AclUsage* usage);

#ifdef __cplusplus
}
#endif
