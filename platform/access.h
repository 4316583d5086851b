// Platform library: the services through which the switch is managed, and the processes that serve
// them.
//
// Calls return 0 or a platform code; a failing one changes neither the switch nor its output.
// States are 0 off, 1 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// The web interface, plain and over TLS. Both take effect at once.
int sal_sys_httpEnable_get(uint32_t* enable);
int sal_sys_httpEnable_set(int enable);
int sal_sys_httpsEnable_set(int enable);

// Telnet and SSH, which inetd starts. What is set takes effect when inetd's configuration has been
// written and inetd has been restarted; connections that are open then stay open.
int sal_sys_telnetdEnable_get(uint32_t* enable);
int sal_sys_telnetdEnable_set(int enable);
int sal_ssh_sshdEnable_get(uint32_t* enable);
int sal_ssh_sshdEnable_set(int enable);

// Writes inetd's configuration from the states that are set.
int sal_sys_inetdConfig_set(void);
int sal_inetd_restart(void);

// Kills every process whose command line holds `name`. That there is none is no failure.
int sal_util_process_kill(const char* name);

#ifdef __cplusplus
}
#endif
