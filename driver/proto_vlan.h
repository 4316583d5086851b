// VLANs by protocol.
// Commands from 4736 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// A protocol of packets. 8 bytes.
typedef struct ProtoGroup {
    uint32_t frame_type; // 0 Ethernet, 1 SNAP, 2 LLC
    uint32_t ethertype;  // 0x0000 to 0xFFFF
} ProtoGroup;

// A protocol group, from 0.
int rsd_vlan_protoGroup_set(uint32_t group, const ProtoGroup* protocol);

// VLAN, 1 to 4094, that a port gives to untagged packets of a group; and that it no longer does.
int rsd_vlan_portProtoVlan_set(uint32_t port, uint32_t group, uint32_t vid);
int rsd_vlan_portProtoVlan_disable(uint32_t port, uint32_t group);

#ifdef __cplusplus
}
#endif
