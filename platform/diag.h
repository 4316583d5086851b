// Platform library: diagnosis - the copper cable test, and the lock around the traceroute tool.
//
// Calls return 0 or a platform code; a failing one changes nothing.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

// Tests the cable at a copper port (zero-based logical port) and keeps the result in the switch
// chip. The link is interrupted meanwhile. Refused on a fibre port and on a group.
int sal_cablediag_copper_set(int port);

// Traceroute runs once at a time on the switch, be it for the web interface, the command line or
// the cloud. _check fails while another user runs it; _take takes the lock and fails when it is
// held; _give gives it back.
int sal_sys_tracerouteLock_check(void);
int sal_sys_tracerouteLock_take(void);
int sal_sys_tracerouteLock_give(void);

#ifdef __cplusplus
}
#endif
