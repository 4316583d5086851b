// VLANs by protocol.
#include "driver/proto_vlan.h"

#include "driver/shapes.h"

static_assert(sizeof(ProtoGroup) == 8, "the driver's record");

// clang-format off
int rsd_vlan_protoGroup_set(uint32_t group, const ProtoGroup* protocol)     { return request_chip_entry_set(4737, protocol, group); }
int rsd_vlan_portProtoVlan_set(uint32_t port, uint32_t group, uint32_t vid) { return request_chip_port(4738, port, group, vid); }
int rsd_vlan_portProtoVlan_disable(uint32_t port, uint32_t group)           { return request_chip_port(4739, port, group); }
// clang-format on
