// Rates: storm control and bandwidth limits.
#include "driver/rate.h"

#include "driver/request.h"

// clang-format off
int rsd_rate_stormControlRate_set(uint32_t port, uint32_t kind, uint32_t rate)  { return chip_port_request(3841, port, kind, rate); }
int rsd_rate_stormControlEnable_set(uint32_t port, uint32_t kind, uint32_t enable) { return chip_port_request(3842, port, kind, enable); }
int rsd_rate_stormControlAction_set(uint32_t port, uint32_t action)             { return chip_port_request(3843, port, action); }
int rsd_rate_stormCtrlIncludeIfg_set(uint32_t include)                          { return chip_request(3844, include); }
int rsd_rate_stormCtrlRefreshMode_set(uint32_t mode)                            { return chip_request(3845, mode); }
int rsd_rate_igrBandwidthCtrlEnable_set(uint32_t port, uint32_t enable)         { return chip_port_request(3846, port, enable); }
int rsd_rate_igrBandwidthCtrlRate_set(uint32_t port, uint32_t rate)             { return chip_port_request(3847, port, rate); }
int rsd_rate_igrBandwidthCtrlBurstSize_set(uint32_t bytes)                      { return chip_request(3848, bytes); }
int rsd_rate_portIgrBandwidthCtrlBurstSize_set(uint32_t port, uint32_t bytes)   { return chip_port_request(3849, port, bytes); }
int rsd_rate_egrBandwidthCtrlEnable_set(uint32_t port, uint32_t enable)         { return chip_port_request(3850, port, enable); }
int rsd_rate_egrBandwidthCtrlRate_set(uint32_t port, uint32_t rate)             { return chip_port_request(3851, port, rate); }
int rsd_rate_egrBandwidthCtrlBurstSize_set(uint32_t bytes)                      { return chip_request(3852, bytes); }
int rsd_rate_portEgrBandwidthCtrlBurstSize_set(uint32_t port, uint32_t bytes)   { return chip_port_request(3853, port, bytes); }
int rsd_rate_egrQueueCtrlRate_set(uint32_t port, uint32_t queue, uint32_t rate) { return chip_port_request(3854, port, queue, rate); }
int rsd_rate_egrQueueCtrlEnable_set(uint32_t port, uint32_t queue, uint32_t enable) { return chip_port_request(3855, port, queue, enable); }
int rsd_rate_egrSysQueueCtrlBurstSize_set(uint32_t queue, uint32_t bytes)       { return chip_request(3856, queue, bytes); }
int rsd_rate_portEgrQueueCtrlBurstSize_set(uint32_t port, uint32_t queue, uint32_t bytes) { return chip_port_request(3857, port, queue, bytes); }
int rsd_rate_igrBandwidthCtrlIncludeIfg_set(uint32_t include)                   { return chip_request(3858, include); }
int rsd_rate_egrBandwidthCtrlIncludeIfg_set(uint32_t include)                   { return chip_request(3859, include); }
int rsd_rate_cpuEgrBandwidthCtrl_set(uint32_t enable, uint32_t rate)            { return chip_request(3860, enable, rate); }
int rsd_rate_cpuEgrQueueCtrlEnable_set(uint32_t queue, uint32_t enable)         { return chip_request(3861, queue, enable); }

int rsd_rate_stormControlRate_get(uint32_t port, uint32_t kind, uint32_t* rate)  { return chip_port_request(3907, port, kind, rate); }
int rsd_rate_stormCtrlIncludeIfg_get(uint32_t* include)                          { return chip_request(3908, include); }
int rsd_rate_stormCtrlRefreshMode_get(uint32_t* mode)                            { return chip_request(3909, mode); }
int rsd_rate_igrBandwidthCtrlEnable_get(uint32_t port, uint32_t* enable)         { return chip_port_request(3910, port, enable); }
int rsd_rate_igrBandwidthCtrlBurstSize_get(uint32_t* bytes)                      { return chip_request(3912, bytes); }
int rsd_rate_igrBandwidthCtrlRate_get(uint32_t port, uint32_t* rate)             { return chip_port_request(3913, port, rate); }
int rsd_rate_egrBandwidthCtrlEnable_get(uint32_t port, uint32_t* enable)         { return chip_port_request(3914, port, enable); }
int rsd_rate_egrBandwidthCtrlBurstSize_get(uint32_t* bytes)                      { return chip_request(3916, bytes); }
int rsd_rate_egrBandwidthCtrlRate_get(uint32_t port, uint32_t* rate)             { return chip_port_request(3917, port, rate); }
int rsd_rate_egrQueueCtrlEnable_get(uint32_t port, uint32_t queue, uint32_t* enable) { return chip_port_request(3919, port, queue, enable); }
int rsd_rate_egrQueueCtrlRate_get(uint32_t port, uint32_t queue, uint32_t* rate) { return chip_port_request(3920, port, queue, rate); }
int rsd_rate_portEgrQueueCtrlBurstSize_get(uint32_t port, uint32_t queue, uint32_t* bytes) { return chip_port_request(3921, port, queue, bytes); }
int rsd_rate_igrBandwidthCtrlIncludeIfg_get(uint32_t* include)                   { return chip_request(3922, include); }
int rsd_rate_egrBandwidthCtrlIncludeIfg_get(uint32_t* include)                   { return chip_request(3923, include); }
int rsd_rate_cpuEgrBandwidthCtrl_get(uint32_t* enable, uint32_t* rate)           { return chip_request(3924, enable, rate); }
int rsd_rate_cpuEgrQueueCtrlEnable_get(uint32_t queue, uint32_t* enable)         { return chip_request(3925, queue, enable); }
int rsd_rate_cpuEgrBandwidthCtrlRateMode_get(uint32_t* mode)                     { return chip_request(3926, mode); }
// clang-format on
