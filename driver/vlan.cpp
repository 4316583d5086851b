// VLANs: the configured (admin) and the actual (oper) ones, and the ports in them.
#include "driver/vlan.h"

#include "driver/shapes.h"

static_assert(sizeof(ChipVlan) == 68, "the driver's record");

// clang-format off
int rsd_vlan_defaultVid_set(uint32_t vid)                                   { return request_chip(4481, vid); }
int rsd_vlan_adminEntry_create(uint32_t vid)                                { return request_chip(4482, vid); }
int rsd_vlan_adminEntry_destroy(uint32_t vid)                               { return request_chip(4483, vid); }
int rsd_vlan_adminEntry_set(uint32_t vid, const ChipVlan* entry)            { return request_chip_entry_set(4484, entry, vid); }
int rsd_vlan_name_set(uint32_t vid, const char* name)                       { return request_chip_text_set<CHIP_VLAN_NAME_SIZE>(4485, name, vid); }
int rsd_vlan_portAdminMode_set(uint32_t port, uint32_t mode)                { return request_chip_port(4486, port, mode); }
int rsd_vlan_portAdminRoleUplinkEnable_set(uint32_t port, uint32_t enable)  { return request_chip_port(4487, port, enable); }
int rsd_vlan_portAdminAcceptFrameType_set(uint32_t port, uint32_t type)     { return request_chip_port(4488, port, type); }
int rsd_vlan_portAdminIgrFilterEnable_set(uint32_t port, uint32_t enable)   { return request_chip_port(4489, port, enable); }
int rsd_vlan_portAdminPvid_set(uint32_t port, uint32_t vid)                 { return request_chip_port(4490, port, vid); }
int rsd_vlan_portAdminVlanmask_add(uint32_t port, uint32_t kind, const VlanMask* vlans) { return request_chip_port_entry_set(4491, vlans, port, kind); }
int rsd_vlan_portAdminVlanmask_del(uint32_t port, uint32_t kind, const VlanMask* vlans) { return request_chip_port_entry_set(4492, vlans, port, kind); }
int rsd_vlan_portTrunkAllowedVlan_set(uint32_t port, const VlanMask* vlans) { return request_chip_port_entry_set(4493, vlans, port); }
int rsd_vlan_dot1qTunnelTpid_set(uint32_t tpid)                             { return request_chip(4494, tpid); }
int rsd_vlan_portDot1qTunnelTpid_set(uint32_t port, uint32_t tpid)          { return request_chip_port(4495, port, tpid); }
int rsd_vlan_mgmtVid_set(uint32_t vid)                                      { return request_chip(4496, vid); }
int rsd_vlan_guestVid_set(uint32_t vid)                                     { return request_chip(4497, vid); }
int rsd_vlan_voiceVid_set(uint32_t vid)                                     { return request_chip(4501, vid); }

int rsd_vlan_defaultVid_get(uint32_t* vid)                                    { return request_chip(4545, vid); }
int rsd_vlan_adminEntryExist_get(uint32_t vid, uint32_t* exists)              { return request_chip(4546, vid, exists); }
int rsd_vlan_adminEntry_get(uint32_t vid, ChipVlan* entry)                    { return request_chip_entry_get(4547, entry, vid); }
int rsd_vlan_operEntryNum_get(uint32_t* entries)                              { return request_chip(4549, entries); }
int rsd_vlan_operEntryExist_get(uint32_t vid, uint32_t* exists)               { return request_chip(4550, vid, exists); }
int rsd_vlan_operEntry_get(uint32_t vid, ChipVlan* entry)                     { return request_chip_entry_get(4551, entry, vid); }
int rsd_vlan_operEntrySort_get(uint32_t index, ChipVlan* entry)               { return request_chip_entry_get(4552, entry, index); }
int rsd_vlan_portAdminAcceptFrameType_get(uint32_t port, uint32_t* type)      { return request_chip_port(4555, port, type); }
int rsd_vlan_portAdminIgrFilterEnable_get(uint32_t port, uint32_t* enable)    { return request_chip_port(4556, port, enable); }
int rsd_vlan_portAdminPvid_get(uint32_t port, uint32_t* vid)                  { return request_chip_port(4557, port, vid); }
int rsd_vlan_portAdminVlanmask_get(uint32_t port, uint32_t kind, VlanMask* vlans) { return request_chip_port_entry_get(4558, vlans, port, kind); }
int rsd_vlan_portAdminVlanMember_get(uint32_t port, uint32_t vid, uint32_t* member) { return request_chip_port(4559, port, vid, member); }
int rsd_vlan_portAdminVlanMembership_get(uint32_t port, uint32_t vid, uint32_t* kind) { return request_chip_port(4560, port, vid, kind); }
int rsd_vlan_guestVid_get(uint32_t* vid)                                      { return request_chip(4561, vid); }
int rsd_vlan_portOperPvid_get(uint32_t port, uint32_t* vid)                   { return request_chip_port(4562, port, vid); }
int rsd_vlan_portOperVlanMember_get(uint32_t port, uint32_t vid, uint32_t* member) { return request_chip_port(4563, port, vid, member); }
int rsd_vlan_portOperVlanMembership_get(uint32_t port, uint32_t vid, uint32_t* kind) { return request_chip_port(4564, port, vid, kind); }
int rsd_vlan_dot1qTunnelTpid_get(uint32_t* tpid)                              { return request_chip(4565, tpid); }
int rsd_vlan_portDot1qTunnelTpid_get(uint32_t port, uint32_t* tpid)           { return request_chip_port(4566, port, tpid); }
int rsd_vlan_mibDot1qVlanNumDeletes_get(uint32_t* vlans)                      { return request_chip(4567, vlans); }
int rsd_vlan_mibDot1qVlanCreationTime_get(uint32_t vid, uint32_t* hundredths) { return request_chip(4568, vid, hundredths); }
int rsd_vlan_portVoiceVlanActive_get(uint32_t port, uint32_t* active)         { return request_chip_port(4573, port, active); }
int rsd_vlan_adminVlanMaxEntryNum_get(uint32_t* entries)                      { return request_chip(4574, entries); }
// clang-format on
