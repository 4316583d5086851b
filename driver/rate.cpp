// Rates: storm control and bandwidth limits.
#include "driver/rate.h"

#include "driver/shapes.h"

// clang-format off
int rsd_rate_stormControlRate_set(uint32_t port, uint32_t kind, uint32_t rate)  { return request_chip_port(3841, port, kind, rate); }
int rsd_rate_stormControlEnable_set(uint32_t port, uint32_t kind, uint32_t enable) { return request_chip_port(3842, port, kind, enable); }
int rsd_rate_stormControlAction_set(uint32_t port, uint32_t action)             { return request_chip_port(3843, port, action); }
int rsd_rate_stormCtrlIncludeIfg_set(uint32_t include)                          { return request_chip(3844, include); }
int rsd_rate_stormCtrlRefreshMode_set(uint32_t mode)                            { return request_chip(3845, mode); }
int rsd_rate_igrBandwidthCtrlEnable_set(uint32_t port, uint32_t enable)         { return request_chip_port(3846, port, enable); }
int rsd_rate_igrBandwidthCtrlRate_set(uint32_t port, uint32_t rate)             { return request_chip_port(3847, port, rate); }
int rsd_rate_igrBandwidthCtrlBurstSize_set(uint32_t bytes)                      { return request_chip(3848, bytes); }
int rsd_rate_portIgrBandwidthCtrlBurstSize_set(uint32_t port, uint32_t bytes)   { return request_chip_port(3849, port, bytes); }
int rsd_rate_egrBandwidthCtrlEnable_set(uint32_t port, uint32_t enable)         { return request_chip_port(3850, port, enable); }
int rsd_rate_egrBandwidthCtrlRate_set(uint32_t port, uint32_t rate)             { return request_chip_port(3851, port, rate); }
int rsd_rate_egrBandwidthCtrlBurstSize_set(uint32_t bytes)                      { return request_chip(3852, bytes); }
int rsd_rate_portEgrBandwidthCtrlBurstSize_set(uint32_t port, uint32_t bytes)   { return request_chip_port(3853, port, bytes); }
int rsd_rate_egrQueueCtrlRate_set(uint32_t port, uint32_t queue, uint32_t rate) { return request_chip_port(3854, port, queue, rate); }
int rsd_rate_egrQueueCtrlEnable_set(uint32_t port, uint32_t queue, uint32_t enable) { return request_chip_port(3855, port, queue, enable); }
int rsd_rate_egrSysQueueCtrlBurstSize_set(uint32_t queue, uint32_t bytes)       { return request_chip(3856, queue, bytes); }
int rsd_rate_portEgrQueueCtrlBurstSize_set(uint32_t port, uint32_t queue, uint32_t bytes) { return request_chip_port(3857, port, queue, bytes); }
int rsd_rate_igrBandwidthCtrlIncludeIfg_set(uint32_t include)                   { return request_chip(3858, include); }
int rsd_rate_egrBandwidthCtrlIncludeIfg_set(uint32_t include)                   { return request_chip(3859, include); }
int rsd_rate_cpuEgrBandwidthCtrl_set(uint32_t enable, uint32_t rate)            { return request_chip(3860, enable, rate); }
int rsd_rate_cpuEgrQueueCtrlEnable_set(uint32_t queue, uint32_t enable)         { return request_chip(3861, queue, enable); }

int rsd_rate_stormControlRate_get(uint32_t port, uint32_t kind, uint32_t* rate)  { return request_chip_port(3907, port, kind, rate); }
int rsd_rate_stormCtrlIncludeIfg_get(uint32_t* include)                          { return request_chip(3908, include); }
int rsd_rate_stormCtrlRefreshMode_get(uint32_t* mode)                            { return request_chip(3909, mode); }
int rsd_rate_igrBandwidthCtrlEnable_get(uint32_t port, uint32_t* enable)         { return request_chip_port(3910, port, enable); }
int rsd_rate_igrBandwidthCtrlBurstSize_get(uint32_t* bytes)                      { return request_chip(3912, bytes); }
int rsd_rate_igrBandwidthCtrlRate_get(uint32_t port, uint32_t* rate)             { return request_chip_port(3913, port, rate); }
int rsd_rate_egrBandwidthCtrlEnable_get(uint32_t port, uint32_t* enable)         { return request_chip_port(3914, port, enable); }
int rsd_rate_egrBandwidthCtrlBurstSize_get(uint32_t* bytes)                      { return request_chip(3916, bytes); }
int rsd_rate_egrBandwidthCtrlRate_get(uint32_t port, uint32_t* rate)             { return request_chip_port(3917, port, rate); }
int rsd_rate_egrQueueCtrlEnable_get(uint32_t port, uint32_t queue, uint32_t* enable) { return request_chip_port(3919, port, queue, enable); }
int rsd_rate_egrQueueCtrlRate_get(uint32_t port, uint32_t queue, uint32_t* rate) { return request_chip_port(3920, port, queue, rate); }
int rsd_rate_portEgrQueueCtrlBurstSize_get(uint32_t port, uint32_t queue, uint32_t* bytes) { return request_chip_port(3921, port, queue, bytes); }
int rsd_rate_igrBandwidthCtrlIncludeIfg_get(uint32_t* include)                   { return request_chip(3922, include); }
int rsd_rate_egrBandwidthCtrlIncludeIfg_get(uint32_t* include)                   { return request_chip(3923, include); }
int rsd_rate_cpuEgrBandwidthCtrl_get(uint32_t* enable, uint32_t* rate)           { return request_chip(3924, enable, rate); }
int rsd_rate_cpuEgrQueueCtrlEnable_get(uint32_t queue, uint32_t* enable)         { return request_chip(3925, queue, enable); }
int rsd_rate_cpuEgrBandwidthCtrlRateMode_get(uint32_t* mode)                     { return request_chip(3926, mode); }
// clang-format on
