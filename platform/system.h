// Platform library: the switch as a whole - its identity, addresses, ports, configuration.
//
// Calls that return a code return 0 or a platform code and, on failure, leave their outputs
// unchanged. Calls whose name ends in _ret return the value itself and cannot fail.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Logical ports, 11 to 96: copper ports, then two fibre ports, then eight aggregation groups.
int sys_logic_port_num_ret(void);

// Non-zero while `port` (zero-based logical port) has link.
int sys_port_linkStatus_ret(int port);

// The switch's own MAC address, 6 bytes.
int sal_sys_macAddr_get(uint8_t* mac);

// The system name, NUL-terminated. The buffer holds 256 bytes; _set refuses more than the platform
// can keep and copies the text.
int sal_sys_systemName_get(char* name);
int sal_sys_systemName_set(const char* name);

// The running firmware's version, a text that the library owns.
const char* fds_sys_version_ret(void);

// Time since the switch started, in hundredths of a second.
int sal_sys_systemUptime_get(uint32_t* hundredths);

// IPv4 addresses, most significant byte first in the number: 192.0.2.1 is 0xC0000201.
int sal_sys_ip_get(uint32_t* address, uint32_t* mask);
int sal_sys_gateway_get(uint32_t* address);

// Writes the running configuration to the startup configuration.
int cmd_conf_startupConfig_save(void);

// Reboots the switch at once, with its startup configuration. May return before the switch goes
// down.
int sal_sys_reboot(void);

#ifdef __cplusplus
}
#endif
