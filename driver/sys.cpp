// The system: addresses, identity, time base and state of the switch.
#include "driver/sys.h"

#include "driver/shapes.h"

static_assert(sizeof(SysMac) == 8, "the driver's record");
static_assert(sizeof(SysInfo) == 200, "the driver's record");

// clang-format off
int rsd_sys_ipAddr_set(uint32_t address, uint32_t mask) { return request_chip(1, address, mask); }
int rsd_sys_info_set(const SysInfo* info)               { return request_chip_entry_set(3, info); }
int rsd_sys_status_set(uint32_t status)                 { return request_chip(5, status); }

int rsd_sys_macAddr_get(SysMac* mac)                    { return request_chip_entry_get(65, mac); }
int rsd_sys_portMacAddr_get(uint32_t port, SysMac* mac) { return request_chip_port_entry_get(66, mac, port); }
int rsd_sys_info_get(SysInfo* info)                     { return request_chip_entry_get(67, info); }
int rsd_sys_jiffies_get(uint32_t* ticks)                { return request_chip(68, ticks); }
int rsd_sys_hz_get(uint32_t* hertz)                     { return request_chip(69, hertz); }
int rsd_sys_cpuFreq_get(uint32_t* megahertz)            { return request_chip(70, megahertz); }
int rsd_sys_resetStatus_get(uint32_t* pressed)          { return request_chip(71, pressed); }
int rsd_sys_status_get(uint32_t* status)                { return request_chip(72, status); }
// clang-format on
