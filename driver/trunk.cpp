// Link aggregation in the chip. Groups (trunks) are numbered from 0.
#include "driver/trunk.h"

#include "driver/request.h"

// clang-format off
int rsd_trunk_staticGroup_set(uint32_t group, const PortBitmap* members) { return chip_entry_set(4353, members, group); }
int rsd_trunk_staticGroup_del(uint32_t group)                            { return chip_request(4354, group); }
int rsd_trunk_lacpGroup_set(uint32_t group, const PortBitmap* members)   { return chip_entry_set(4355, members, group); }
int rsd_trunk_lacpGroup_del(uint32_t group)                              { return chip_request(4356, group); }
int rsd_trunk_hashAlgo_set(uint32_t algorithm)                           { return chip_request(4357, algorithm); }

int rsd_trunk_mode_get(uint32_t group, uint32_t* mode)              { return chip_request(4417, group, mode); }
int rsd_trunk_activeMember_get(uint32_t group, PortBitmap* members) { return chip_entry_get(4418, members, group); }
int rsd_trunk_portRole_get(uint32_t port, uint32_t* role)           { return chip_port_request(4419, port, role); }
int rsd_trunk_memberPortTrunkId_get(uint32_t port, uint32_t* group) { return chip_port_request(4421, port, group); }
// clang-format on
