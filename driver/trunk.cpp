// Link aggregation in the chip. Groups (trunks) are numbered from 0.
#include "driver/trunk.h"

#include "driver/shapes.h"

// clang-format off
int rsd_trunk_staticGroup_set(uint32_t group, const PortBitmap* members) { return request_chip_entry_set(4353, members, group); }
int rsd_trunk_staticGroup_del(uint32_t group)                            { return request_chip(4354, group); }
int rsd_trunk_lacpGroup_set(uint32_t group, const PortBitmap* members)   { return request_chip_entry_set(4355, members, group); }
int rsd_trunk_lacpGroup_del(uint32_t group)                              { return request_chip(4356, group); }
int rsd_trunk_hashAlgo_set(uint32_t algorithm)                           { return request_chip(4357, algorithm); }

int rsd_trunk_mode_get(uint32_t group, uint32_t* mode)              { return request_chip(4417, group, mode); }
int rsd_trunk_activeMember_get(uint32_t group, PortBitmap* members) { return request_chip_entry_get(4418, members, group); }
int rsd_trunk_portRole_get(uint32_t port, uint32_t* role)           { return request_chip_port(4419, port, role); }
int rsd_trunk_memberPortTrunkId_get(uint32_t port, uint32_t* group) { return request_chip_port(4421, port, group); }
// clang-format on
