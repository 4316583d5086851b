// Dynamic VLAN registration (GVRP).
// Commands from 1536 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// A VLAN that registration knows. 32 bytes.
typedef struct GvrpVlan {
    uint32_t vlan;    // 1 to 4094
    uint32_t dynamic; // 0 configured, 1 learned
    PortBitmap members;
    PortBitmap untagged;
} GvrpVlan;

// State of the protocol. Timers in hundredths of a second. 28 bytes.
typedef struct GvrpInfo {
    uint32_t enable;
    uint32_t join;
    uint32_t leave;
    uint32_t leave_all;
    PortBitmap enabled_ports;
} GvrpInfo;

// Messages of a port. 48 bytes.
typedef struct GvrpStatistics {
    uint32_t join_empty_received, join_in_received, empty_received;
    uint32_t leave_in_received, leave_empty_received, leave_all_received;
    uint32_t join_empty_sent, join_in_sent, empty_sent;
    uint32_t leave_in_sent, leave_empty_sent, leave_all_sent;
} GvrpStatistics;

// Messages of a port that were dropped, by what was wrong with them. 20 bytes.
typedef struct GvrpErrorStatistics {
    uint32_t protocol_id;
    uint32_t attribute_type;
    uint32_t attribute_value;
    uint32_t attribute_length;
    uint32_t event;
} GvrpErrorStatistics;

// Registration as a whole, and on a port: 0 off, 1 on.
int gvrp_enable_set(uint32_t enable);
int gvrp_port_enable_set(uint32_t port, uint32_t enable);

// What a port registers: 0 normal, 1 fixed, 2 forbidden.
int gvrp_port_regmode_set(uint32_t port, uint32_t mode);

// A VLAN that a port may not join: 0 allowed, 1 forbidden.
int gvrp_port_forbidVlan_set(uint32_t port, uint32_t vlan, uint32_t forbid);

// Tells registration of a configured VLAN that came, changed or went.
int gvrp_add_edit_static_vlan(const GvrpVlan* entry);
int gvrp_del_static_vlan(uint32_t vlan);

// The database: an entry by its place, from 0, and the number of entries.
int gvrp_vlan_db_set(uint32_t index, const GvrpVlan* entry);
int gvrp_vlan_db_get(uint32_t index, GvrpVlan* entry);
int gvrp_vlan_db_size_get(uint32_t* entries);

// A timer (0 join, 1 leave, 2 leave all), in hundredths of a second.
int gvrp_timer_set(uint32_t timer, uint32_t hundredths);

// State of the protocol.
int gvrp_info_get(GvrpInfo* info);

// Counters of a port.
int gvrp_statistics_clear(uint32_t port);
int gvrp_error_statistics_clear(uint32_t port);
int gvrp_port_statistics_get(uint32_t port, GvrpStatistics* statistics);
int gvrp_port_error_statistics_get(uint32_t port, GvrpErrorStatistics* statistics);

// VLANs that exist, configured or learned.
int gvrp_vlanMaskExist_get(VlanMask* vlans);

// State of a port's registration machine for a VLAN, the driver's code.
int gvrp_gidtt_machine_get(uint32_t port, uint32_t vlan, uint32_t* state);

#ifdef __cplusplus
}
#endif
