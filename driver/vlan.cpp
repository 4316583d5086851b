// VLANs: the configured (admin) and the actual (oper) ones, and the ports in them.
#include "driver/vlan.h"

#include "driver/request.h"

static_assert(sizeof(ChipVlan) == 68, "the driver's record");

// clang-format off
int rsd_vlan_defaultVid_set(uint32_t vid)                                   { return chip_request(4481, vid); }
int rsd_vlan_adminEntry_create(uint32_t vid)                                { return chip_request(4482, vid); }
int rsd_vlan_adminEntry_destroy(uint32_t vid)                               { return chip_request(4483, vid); }
int rsd_vlan_adminEntry_set(uint32_t vid, const ChipVlan* entry)            { return chip_entry_set(4484, entry, vid); }
int rsd_vlan_name_set(uint32_t vid, const char* name)                       { return chip_text_set<CHIP_VLAN_NAME_SIZE>(4485, name, vid); }
int rsd_vlan_portAdminMode_set(uint32_t port, uint32_t mode)                { return chip_port_request(4486, port, mode); }
int rsd_vlan_portAdminRoleUplinkEnable_set(uint32_t port, uint32_t enable)  { return chip_port_request(4487, port, enable); }
int rsd_vlan_portAdminAcceptFrameType_set(uint32_t port, uint32_t type)     { return chip_port_request(4488, port, type); }
int rsd_vlan_portAdminIgrFilterEnable_set(uint32_t port, uint32_t enable)   { return chip_port_request(4489, port, enable); }
int rsd_vlan_portAdminPvid_set(uint32_t port, uint32_t vid)                 { return chip_port_request(4490, port, vid); }
int rsd_vlan_portAdminVlanmask_add(uint32_t port, uint32_t kind, const VlanMask* vlans) { return chip_port_entry_set(4491, vlans, port, kind); }
int rsd_vlan_portAdminVlanmask_del(uint32_t port, uint32_t kind, const VlanMask* vlans) { return chip_port_entry_set(4492, vlans, port, kind); }
int rsd_vlan_portTrunkAllowedVlan_set(uint32_t port, const VlanMask* vlans) { return chip_port_entry_set(4493, vlans, port); }
int rsd_vlan_dot1qTunnelTpid_set(uint32_t tpid)                             { return chip_request(4494, tpid); }
int rsd_vlan_portDot1qTunnelTpid_set(uint32_t port, uint32_t tpid)          { return chip_port_request(4495, port, tpid); }
int rsd_vlan_mgmtVid_set(uint32_t vid)                                      { return chip_request(4496, vid); }
int rsd_vlan_guestVid_set(uint32_t vid)                                     { return chip_request(4497, vid); }
int rsd_vlan_voiceVid_set(uint32_t vid)                                     { return chip_request(4501, vid); }

int rsd_vlan_defaultVid_get(uint32_t* vid)                                    { return chip_request(4545, vid); }
int rsd_vlan_adminEntryExist_get(uint32_t vid, uint32_t* exists)              { return chip_request(4546, vid, exists); }
int rsd_vlan_adminEntry_get(uint32_t vid, ChipVlan* entry)                    { return chip_entry_get(4547, entry, vid); }
int rsd_vlan_operEntryNum_get(uint32_t* entries)                              { return chip_request(4549, entries); }
int rsd_vlan_operEntryExist_get(uint32_t vid, uint32_t* exists)               { return chip_request(4550, vid, exists); }
int rsd_vlan_operEntry_get(uint32_t vid, ChipVlan* entry)                     { return chip_entry_get(4551, entry, vid); }
int rsd_vlan_operEntrySort_get(uint32_t index, ChipVlan* entry)               { return chip_entry_get(4552, entry, index); }
int rsd_vlan_portAdminAcceptFrameType_get(uint32_t port, uint32_t* type)      { return chip_port_request(4555, port, type); }
int rsd_vlan_portAdminIgrFilterEnable_get(uint32_t port, uint32_t* enable)    { return chip_port_request(4556, port, enable); }
int rsd_vlan_portAdminPvid_get(uint32_t port, uint32_t* vid)                  { return chip_port_request(4557, port, vid); }
int rsd_vlan_portAdminVlanmask_get(uint32_t port, uint32_t kind, VlanMask* vlans) { return chip_port_entry_get(4558, vlans, port, kind); }
int rsd_vlan_portAdminVlanMember_get(uint32_t port, uint32_t vid, uint32_t* member) { return chip_port_request(4559, port, vid, member); }
int rsd_vlan_portAdminVlanMembership_get(uint32_t port, uint32_t vid, uint32_t* kind) { return chip_port_request(4560, port, vid, kind); }
int rsd_vlan_guestVid_get(uint32_t* vid)                                      { return chip_request(4561, vid); }
int rsd_vlan_portOperPvid_get(uint32_t port, uint32_t* vid)                   { return chip_port_request(4562, port, vid); }
int rsd_vlan_portOperVlanMember_get(uint32_t port, uint32_t vid, uint32_t* member) { return chip_port_request(4563, port, vid, member); }
int rsd_vlan_portOperVlanMembership_get(uint32_t port, uint32_t vid, uint32_t* kind) { return chip_port_request(4564, port, vid, kind); }
int rsd_vlan_dot1qTunnelTpid_get(uint32_t* tpid)                              { return chip_request(4565, tpid); }
int rsd_vlan_portDot1qTunnelTpid_get(uint32_t port, uint32_t* tpid)           { return chip_port_request(4566, port, tpid); }
int rsd_vlan_mibDot1qVlanNumDeletes_get(uint32_t* vlans)                      { return chip_request(4567, vlans); }
int rsd_vlan_mibDot1qVlanCreationTime_get(uint32_t vid, uint32_t* hundredths) { return chip_request(4568, vid, hundredths); }
int rsd_vlan_portVoiceVlanActive_get(uint32_t port, uint32_t* active)         { return chip_port_request(4573, port, active); }
int rsd_vlan_adminVlanMaxEntryNum_get(uint32_t* entries)                      { return chip_request(4574, entries); }
// clang-format on
