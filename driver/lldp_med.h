// Link layer discovery for media endpoints.
// Commands from 2560 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    LLDP_MED_TEXT_SIZE = 33,
    LLDP_MED_COORDINATE_SIZE = 16,
    LLDP_MED_CIVIC_SIZE = 160,
    LLDP_MED_ELIN_SIZE = 26,
};

// How an endpoint is to send one kind of traffic. 24 bytes.
typedef struct LldpMedPolicy {
    uint32_t number;      // 1 to 32
    uint32_t application; // 1 voice to 8 video signalling; 0 removes the policy
    uint32_t vlan;
    uint32_t tagged;
    uint32_t priority; // 0 to 7
    uint32_t dscp;     // 0 to 63
} LldpMedPolicy;

// Where a port ends. An empty field is not announced. 208 bytes.
typedef struct LldpMedLocation {
    uint32_t civic_length;
    uint8_t coordinate[LLDP_MED_COORDINATE_SIZE];
    uint8_t civic[LLDP_MED_CIVIC_SIZE];
    char elin[LLDP_MED_ELIN_SIZE]; // emergency number, digits, NUL-terminated
    uint8_t reserved[2];
} LldpMedLocation;

// What a device says of itself. Texts are NUL-terminated. 232 bytes.
typedef struct LldpMedInventory {
    char hardware[LLDP_MED_TEXT_SIZE];
    char firmware[LLDP_MED_TEXT_SIZE];
    char software[LLDP_MED_TEXT_SIZE];
    char serial[LLDP_MED_TEXT_SIZE];
    char manufacturer[LLDP_MED_TEXT_SIZE];
    char model[LLDP_MED_TEXT_SIZE];
    char asset[LLDP_MED_TEXT_SIZE];
    uint8_t reserved[1];
} LldpMedInventory;

// What a port announces, or heard. 472 bytes.
typedef struct LldpMedEntry {
    uint32_t capabilities;
    uint32_t device_class;
    LldpMedPolicy policy;
    LldpMedLocation location;
    LldpMedInventory inventory;
} LldpMedEntry;

// Messages sent at once when an endpoint appears, 1 to 10.
int lldp_medFastRepeatCount_set(uint32_t messages);

// A policy, at the number that it carries; one for the voice VLAN made by itself: 0 off, 1 on.
int lldp_medNetworkPolicy_set(const LldpMedPolicy* policy);
int lldp_medNetworkPolicyAuto_set(uint32_t enable);
int lldp_medNetworkPolicyAuto_get(uint32_t* enable);

// A port: 0 off, 1 on; contents of its message, one bit each; its policies, bit n - 1 for number n.
int lldp_portMedEnable_set(uint32_t port, uint32_t enable);
int lldp_portMedEnable_get(uint32_t port, uint32_t* enable);
int lldp_portMedTlvSel_set(uint32_t port, uint32_t tlvs);
int lldp_portMedTlvSel_get(uint32_t port, uint32_t* tlvs);
int lldp_portMedNetworkPolicyBind_set(uint32_t port, uint32_t policies);
int lldp_portMedNetworkPolicyBind_get(uint32_t port, uint32_t* policies);

// Where a port ends.
int lldp_portMedLocation_set(uint32_t port, const LldpMedLocation* location);
int lldp_portMedLocation_get(uint32_t port, LldpMedLocation* location);

// What the switch says of itself.
int lldp_medInventory_set(const LldpMedInventory* inventory);
int lldp_medInventory_get(LldpMedInventory* inventory);

// What a port announces, and its neighbours from 0.
int lldp_portMedLocalEntryInfo_get(uint32_t port, LldpMedEntry* entry);
int lldp_portMedRemoteEntryInfo_get(uint32_t port, uint32_t index, LldpMedEntry* entry);

#ifdef __cplusplus
}
#endif
