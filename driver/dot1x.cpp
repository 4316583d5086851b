// Port-based network access control (802.1X).
#include "driver/dot1x.h"

#include "driver/shapes.h"

static_assert(sizeof(Dot1xRadiusServer) == 84, "the driver's record");
static_assert(sizeof(Dot1xRadiusStatistics) == 48, "the driver's record");
static_assert(sizeof(Dot1xHost) == 16, "the driver's record");

// clang-format off
int dot1x_enable_set(uint32_t enable)                                { return request_set(770, enable); }
int dot1x_gateway_set(uint32_t address)                              { return request_set(772, address); }
int dot1x_portReauthEbl_set(uint32_t port, uint32_t enable)          { return request_port_set(773, port, enable); }
int dot1x_portReauthPeriod_set(uint32_t port, uint32_t seconds)      { return request_port_set(774, port, seconds); }
int dot1x_radiusSrv_set(const Dot1xRadiusServer* server)             { return request_entry_set(775, server); }
int dot1x_portMode_set(uint32_t port, uint32_t mode)                 { return request_port_set(777, port, mode); }
int dot1x_guestVlan_set(uint32_t vlan)                               { return request_set(778, vlan); }
int dot1x_guestVlan_port_set(uint32_t port, uint32_t enable)         { return request_port_set(779, port, enable); }
int dot1x_timeoutQuiet_set(uint32_t seconds)                         { return request_set(780, seconds); }
int dot1x_portTimeoutSupplicant_set(uint32_t port, uint32_t seconds) { return request_port_set(781, port, seconds); }
int dot1x_portMaxReq_set(uint32_t port, uint32_t requests)           { return request_port_set(782, port, requests); }

int dot1x_authPortCurState_get(uint32_t port, uint32_t* state)           { return request_port_get(834, port, state); }
int dot1x_authPortStatus_get(uint32_t port, uint32_t* status)            { return request_port_get(835, port, status); }
int dot1x_gateway_get(uint32_t* address)                                 { return request_get(836, address); }
int dot1x_portReauthEbl_get(uint32_t port, uint32_t* enable)             { return request_port_get(837, port, enable); }
int dot1x_guestVlan_state_port_get(uint32_t port, uint32_t* active)      { return request_port_get(838, port, active); }
int dot1x_mibRadiusClientStatInfo_get(uint32_t server, Dot1xRadiusStatistics* statistics) { return request_index_entry_get(839, server, statistics); }
int dot1x_authedHost_get(uint32_t port, uint32_t index, Dot1xHost* host) { return request_index_port_entry_get(840, index, port, host); }
int dot1x_portReauthLifeTime_get(uint32_t port, uint32_t* seconds)       { return request_port_get(841, port, seconds); }
// clang-format on
