// Rates: storm control and bandwidth limits.
// Commands from 3840 on.
//
// Rates are in kbit/s, bursts in bytes. A storm has a kind: 0 broadcast, 1 unknown multicast, 2
// unknown unicast. Queues are numbered from 0.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Storm control on a port: limit and switch (0 off, 1 on) by kind, and what becomes of the excess:
// 0 dropped, 1 shuts the port.
int rsd_rate_stormControlRate_set(uint32_t port, uint32_t kind, uint32_t rate);
int rsd_rate_stormControlRate_get(uint32_t port, uint32_t kind, uint32_t* rate);
int rsd_rate_stormControlEnable_set(uint32_t port, uint32_t kind, uint32_t enable);
int rsd_rate_stormControlAction_set(uint32_t port, uint32_t action);

// What storm control counts: 1 with the gap between frames; 0 in bits, 1 in packets.
int rsd_rate_stormCtrlIncludeIfg_set(uint32_t include);
int rsd_rate_stormCtrlIncludeIfg_get(uint32_t* include);
int rsd_rate_stormCtrlRefreshMode_set(uint32_t mode);
int rsd_rate_stormCtrlRefreshMode_get(uint32_t* mode);

// Limit on what a port receives: 0 off, 1 on; rate; burst for all ports and for one; whether the
// gap between frames counts.
int rsd_rate_igrBandwidthCtrlEnable_set(uint32_t port, uint32_t enable);
int rsd_rate_igrBandwidthCtrlEnable_get(uint32_t port, uint32_t* enable);
int rsd_rate_igrBandwidthCtrlRate_set(uint32_t port, uint32_t rate);
int rsd_rate_igrBandwidthCtrlRate_get(uint32_t port, uint32_t* rate);
int rsd_rate_igrBandwidthCtrlBurstSize_set(uint32_t bytes);
int rsd_rate_igrBandwidthCtrlBurstSize_get(uint32_t* bytes);
int rsd_rate_portIgrBandwidthCtrlBurstSize_set(uint32_t port, uint32_t bytes);
int rsd_rate_igrBandwidthCtrlIncludeIfg_set(uint32_t include);
int rsd_rate_igrBandwidthCtrlIncludeIfg_get(uint32_t* include);

// The same for what a port sends.
int rsd_rate_egrBandwidthCtrlEnable_set(uint32_t port, uint32_t enable);
int rsd_rate_egrBandwidthCtrlEnable_get(uint32_t port, uint32_t* enable);
int rsd_rate_egrBandwidthCtrlRate_set(uint32_t port, uint32_t rate);
int rsd_rate_egrBandwidthCtrlRate_get(uint32_t port, uint32_t* rate);
int rsd_rate_egrBandwidthCtrlBurstSize_set(uint32_t bytes);
int rsd_rate_egrBandwidthCtrlBurstSize_get(uint32_t* bytes);
int rsd_rate_portEgrBandwidthCtrlBurstSize_set(uint32_t port, uint32_t bytes);
int rsd_rate_egrBandwidthCtrlIncludeIfg_set(uint32_t include);
int rsd_rate_egrBandwidthCtrlIncludeIfg_get(uint32_t* include);

// Limit on a queue of a port: 0 off, 1 on; rate; burst for all ports and for one.
int rsd_rate_egrQueueCtrlEnable_set(uint32_t port, uint32_t queue, uint32_t enable);
int rsd_rate_egrQueueCtrlEnable_get(uint32_t port, uint32_t queue, uint32_t* enable);
int rsd_rate_egrQueueCtrlRate_set(uint32_t port, uint32_t queue, uint32_t rate);
int rsd_rate_egrQueueCtrlRate_get(uint32_t port, uint32_t queue, uint32_t* rate);
int rsd_rate_egrSysQueueCtrlBurstSize_set(uint32_t queue, uint32_t bytes);
int rsd_rate_portEgrQueueCtrlBurstSize_set(uint32_t port, uint32_t queue, uint32_t bytes);
int rsd_rate_portEgrQueueCtrlBurstSize_get(uint32_t port, uint32_t queue, uint32_t* bytes);

// Limit on what goes to the processor: 0 off, 1 on, and the rate; on one of its queues; and whether
// its rate is in kbit/s (0) or in packets a second (1).
int rsd_rate_cpuEgrBandwidthCtrl_set(uint32_t enable, uint32_t rate);
int rsd_rate_cpuEgrBandwidthCtrl_get(uint32_t* enable, uint32_t* rate);
int rsd_rate_cpuEgrQueueCtrlEnable_set(uint32_t queue, uint32_t enable);
int rsd_rate_cpuEgrQueueCtrlEnable_get(uint32_t queue, uint32_t* enable);
int rsd_rate_cpuEgrBandwidthCtrlRateMode_get(uint32_t* mode);

#ifdef __cplusplus
}
#endif
