// The system: addresses, identity, time base and state of the switch.
// Commands from 0 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// A MAC address, padded to whole words. 8 bytes.
typedef struct SysMac {
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
} SysMac;

enum { SYS_TEXT_SIZE = 64 };

// What the board is. Texts are NUL-terminated. 200 bytes.
typedef struct SysInfo {
    char model[SYS_TEXT_SIZE];
    char serial[SYS_TEXT_SIZE];
    char hardware[SYS_TEXT_SIZE]; // revision of the board
    uint32_t chip_id;
    uint32_t chip_revision;
} SysInfo;

// The switch's own IPv4 address and mask, as the chip's traps need them; most significant byte
// first in the number: 192.0.2.1 is 0xC0000201.
int rsd_sys_ipAddr_set(uint32_t address, uint32_t mask);

// What the board is.
int rsd_sys_info_set(const SysInfo* info);
int rsd_sys_info_get(SysInfo* info);

// State of the firmware, for the system LED: 0 starting, 1 running, 2 upgrading.
int rsd_sys_status_set(uint32_t status);
int rsd_sys_status_get(uint32_t* status);

// The switch's own MAC address, and that of a logical port.
int rsd_sys_macAddr_get(SysMac* mac);
int rsd_sys_portMacAddr_get(uint32_t port, SysMac* mac);

// The kernel's clock ticks since start (32 bits, wrapping), and ticks a second.
int rsd_sys_jiffies_get(uint32_t* ticks);
int rsd_sys_hz_get(uint32_t* hertz);

// Clock of the processor, in MHz.
int rsd_sys_cpuFreq_get(uint32_t* megahertz);

// Reset button: 0 released, 1 pressed.
int rsd_sys_resetStatus_get(uint32_t* pressed);

#ifdef __cplusplus
}
#endif
