// Platform library: power over Ethernet.
//
// `port` is a zero-based logical port; ports 0 to 23 have PoE, another one is refused. Calls return
// 0 or a platform code; a failing one changes neither the switch nor its outputs. No output pointer
// may be null.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { POE_PORTS = 24 };

// By what a port's power is limited.
enum { POE_LIMIT_BY_CLASS = 1, POE_LIMIT_BY_USER = 2 };

// A port's PoE status.
enum {
    POE_STATUS_OFF = 0,
    POE_STATUS_SEARCHING = 1,
    POE_STATUS_DELIVERING = 2,
    POE_STATUS_DENIED = 3
};

// Power handed out to all ports, in tenths of a watt.
int sal_poe_total_power_allocated_query_get(uint16_t* allocated);

// How the budget is shared out (0 by port order, 1 by priority, 2 not at all: every device is
// served), and the budget in tenths of a watt.
int sal_poe_system_power_management_query_get(uint8_t* mode, uint16_t* budget);

// `disconnect`: how a device's leaving is noticed (0 by current, 1 by impedance). `limit_type`:
// POE_LIMIT_BY_.... `user_limit`: the user's power limit in fifths of a watt, 0 to 150. `priority`:
// 0 low, 1 medium, 2 high, 3 critical. `pairs`: 0 signal pairs, 1 spare pairs.
int sal_poe_port_ext_config_query_get(
    uint8_t port, uint8_t* disconnect, uint8_t* limit_type, uint8_t* user_limit, uint8_t* priority,
    uint8_t* pairs);

// `enable`: PoE on (1) or off (0). `mode`: 0 by the standard, 1 with legacy devices. `detection`:
// the detection method's number. `classification`: 1 when a device's class counts.
int sal_poe_port_config_query_get(
    uint8_t port, uint8_t* enable, uint8_t* mode, uint8_t* detection, uint8_t* classification);

// `status`: POE_STATUS_.... `error`: the cause of a denial, 0 for none. `power_class`: 0 to 4.
int sal_poe_port_status_query_get(
    uint8_t port, uint8_t* status, uint8_t* error, uint8_t* power_class);

// Tenths of a volt, milliamperes, degrees Celsius, and the power drawn in tenths of a watt: 0
// unless the port is POE_STATUS_DELIVERING.
int sal_poe_port_measurements_query_get(
    uint8_t port, uint16_t* voltage, uint16_t* current, uint16_t* temperature, uint16_t* power);

// As in the queries above.
int sal_poe_port_priority_config_set(uint8_t port, int priority);
int sal_poe_power_th_type_config_set(uint8_t port, uint8_t limit_type);
int sal_poe_port_classification_type_config_set(uint8_t port, uint8_t classification);
int sal_poe_port_maxpower_config_set(uint8_t port, uint8_t user_limit);
int sal_poe_port_pse_enable_set(uint8_t port, int enable);

// Takes a port's power away and brings it back; `reset` is 1.
int sal_poe_port_reset_set(uint8_t port, uint8_t reset);

#ifdef __cplusplus
}
#endif
