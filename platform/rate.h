// Platform library: bandwidth limits of ports. Ingress (igr) is what a port receives, egress (egr)
// what it sends.
//
// `port` is a zero-based logical port. Rates are in kbit/s, 16 to 1000000; 1000000 is no limit.
// Calls return 0 or a platform code; a failing one changes neither the switch nor its output.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { RATE_LOWEST = 16, RATE_UNLIMITED = 1000000 };

// Whether the limit is in force: 0 or 1.
int sal_rate_igrBandwidthCtrlEnable_get(int port, uint32_t* enable);
int sal_rate_igrBandwidthCtrlEnable_set(int port, int enable);
int sal_rate_egrBandwidthCtrlEnable_get(int port, uint32_t* enable);
int sal_rate_egrBandwidthCtrlEnable_set(int port, int enable);

int sal_rate_igrBandwidthCtrlRate_get(int port, uint32_t* kbps);
int sal_rate_igrBandwidthCtrlRate_set(int port, int kbps);
int sal_rate_egrBandwidthCtrlRate_get(int port, uint32_t* kbps);
int sal_rate_egrBandwidthCtrlRate_set(int port, int kbps);

#ifdef __cplusplus
}
#endif
