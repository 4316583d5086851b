// Spanning tree: the common tree, the ports, and the instances of multiple spanning tree.
#include "driver/stp.h"

#include "driver/shapes.h"

static_assert(sizeof(StpBridgeId) == 8, "the driver's record");
static_assert(sizeof(StpTreeInfo) == 44, "the driver's record");
static_assert(sizeof(StpPortInfo) == 24, "the driver's record");
static_assert(sizeof(StpMstInfo) == 36, "the driver's record");
static_assert(sizeof(StpMstPortInfo) == 28, "the driver's record");
static_assert(sizeof(StpMstPortMessages) == 24, "the driver's record");

// clang-format off
int stp_enable_set(uint32_t enable)                                              { return request_set(3969, enable); }
int stp_forwardBpdu_set(uint32_t forward)                                        { return request_set(3970, forward); }
int stp_forceVersion_set(uint32_t version)                                       { return request_set(3971, version); }
int stp_helloTime_set(uint32_t seconds)                                          { return request_set(3972, seconds); }
int stp_maxHops_set(uint32_t hops)                                               { return request_set(3973, hops); }
int stp_forwardDelay_set(uint32_t seconds)                                       { return request_set(3974, seconds); }
int stp_maximumAge_set(uint32_t seconds)                                         { return request_set(3975, seconds); }
int stp_txHoldCount_set(uint32_t messages)                                       { return request_set(3976, messages); }
int stp_pathcostMethod_set(uint32_t method)                                      { return request_set(3977, method); }
int stp_portAdminEnable_set(uint32_t port, uint32_t enable)                      { return request_port_set(3978, port, enable); }
int stp_portForwardBpdu_set(uint32_t port, uint32_t forward)                     { return request_port_set(3979, port, forward); }
int stp_portPathCost_set(uint32_t port, uint32_t cost)                           { return request_port_set(3980, port, cost); }
int stp_portEdgePort_set(uint32_t port, uint32_t edge)                           { return request_port_set(3981, port, edge); }
int stp_portBpduFilter_set(uint32_t port, uint32_t enable)                       { return request_port_set(3982, port, enable); }
int stp_portBpduGuard_set(uint32_t port, uint32_t enable)                        { return request_port_set(3983, port, enable); }
int stp_portPointToPointMac_set(uint32_t port, uint32_t mode)                    { return request_port_set(3984, port, mode); }
int stp_portMcheck_set(uint32_t port, uint32_t check)                            { return request_port_set(3985, port, check); }
int stp_mstConfigName_set(const char* name)                                      { return request_text_set<STP_NAME_SIZE>(3986, name); }
int stp_mstConfigRevision_set(uint32_t revision)                                 { return request_set(3987, revision); }
int stp_mstVlanInstance_set(uint32_t vlan, uint32_t instance)                    { return request_vlan_set(3988, vlan, instance); }
int stp_mstVlanmask_set(uint32_t instance, const VlanMask* vlans)                { return request_index_entry_set(3989, instance, vlans); }
int stp_mstPriority_set(uint32_t instance, uint32_t priority)                    { return request_index_set(3990, instance, priority); }
int stp_mstPortPathCost_set(uint32_t instance, uint32_t port, uint32_t cost)     { return request_index_port_set(3991, instance, port, cost); }
int stp_mstPortPriority_set(uint32_t instance, uint32_t port, uint32_t priority) { return request_index_port_set(3992, instance, port, priority); }

int stp_enable_get(uint32_t* enable)                                            { return request_get(4033, enable); }
int stp_forwardBpdu_get(uint32_t* forward)                                      { return request_get(4034, forward); }
int stp_forceVersion_get(uint32_t* version)                                     { return request_get(4035, version); }
int stp_helloTime_get(uint32_t* seconds)                                        { return request_get(4036, seconds); }
int stp_maxHops_get(uint32_t* hops)                                             { return request_get(4037, hops); }
int stp_forwardDelay_get(uint32_t* seconds)                                     { return request_get(4038, seconds); }
int stp_maximumAge_get(uint32_t* seconds)                                       { return request_get(4039, seconds); }
int stp_txHoldCount_get(uint32_t* messages)                                     { return request_get(4040, messages); }
int stp_pathcostMethod_get(uint32_t* method)                                    { return request_get(4041, method); }
int stp_portAdminEnable_get(uint32_t port, uint32_t* enable)                    { return request_port_get(4042, port, enable); }
int stp_portForwardBpdu_get(uint32_t port, uint32_t* forward)                   { return request_port_get(4043, port, forward); }
int stp_portPathCost_get(uint32_t port, uint32_t* cost)                         { return request_port_get(4044, port, cost); }
int stp_portEdgePort_get(uint32_t port, uint32_t* edge)                         { return request_port_get(4045, port, edge); }
int stp_portBpduFilter_get(uint32_t port, uint32_t* enable)                     { return request_port_get(4046, port, enable); }
int stp_portBpduGuard_get(uint32_t port, uint32_t* enable)                      { return request_port_get(4047, port, enable); }
int stp_portPointToPointMac_get(uint32_t port, uint32_t* mode)                  { return request_port_get(4048, port, mode); }
int stp_portMcheck_get(uint32_t port, uint32_t* check)                          { return request_port_get(4049, port, check); }
int stp_mstConfigName_get(char* name)                                           { return request_text_get<STP_NAME_SIZE>(4050, name); }
int stp_mstConfigRevision_get(uint32_t* revision)                               { return request_get(4051, revision); }
int stp_mstVlanInstance_get(uint32_t vlan, uint32_t* instance)                  { return request_vlan_get(4052, vlan, instance); }
int stp_mstPriority_get(uint32_t instance, uint32_t* priority)                  { return request_index_get(4054, instance, priority); }
int stp_mstPortPathCost_get(uint32_t instance, uint32_t port, uint32_t* cost)   { return request_index_port_get(4055, instance, port, cost); }
int stp_mstPortPriority_get(uint32_t instance, uint32_t port, uint32_t* priority) { return request_index_port_get(4056, instance, port, priority); }
int stp_info_get(StpTreeInfo* info)                                             { return request_entry_get(4057, info); }
int stp_portInfo_get(uint32_t port, StpPortInfo* info)                          { return request_port_entry_get(4058, port, info); }
int stp_mstInfo_get(uint32_t instance, StpMstInfo* info)                        { return request_index_entry_get(4059, instance, info); }
int stp_mstPortInfo_get(uint32_t instance, uint32_t port, StpMstPortInfo* info) { return request_index_port_entry_get(4060, instance, port, info); }
int stp_mstPortMsg_get(uint32_t instance, uint32_t port, StpMstPortMessages* messages) { return request_index_port_entry_get(4061, instance, port, messages); }
// clang-format on
