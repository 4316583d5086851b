// Link layer discovery.
// Commands from 2432 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
    LLDP_TEXT_SIZE = 256,
    LLDP_VLAN_NAME_SIZE = 33,
};

// What the switch announces on a port. 1304 bytes.
typedef struct LldpLocalEntry {
    uint32_t chassis_id_type;
    uint32_t port_id_type;
    uint32_t capabilities; // of the switch, one bit each
    uint32_t enabled_capabilities;
    uint32_t management_address; // IPv4, most significant byte first in the number
    uint32_t pvid;
    char chassis_id[LLDP_TEXT_SIZE];
    char port_id[LLDP_TEXT_SIZE];
    char port_description[LLDP_TEXT_SIZE];
    char system_name[LLDP_TEXT_SIZE];
    char system_description[LLDP_TEXT_SIZE];
} LldpLocalEntry;

// A neighbour. 1312 bytes.
typedef struct LldpRemoteEntry {
    uint32_t time_mark; // uptime when it was heard first, in hundredths of a second
    uint32_t life_s;
    LldpLocalEntry announced;
} LldpRemoteEntry;

// A VLAN that a neighbour names. 40 bytes.
typedef struct LldpVlanNameTlv {
    uint32_t vlan;
    char name[LLDP_VLAN_NAME_SIZE];
    uint8_t reserved[3];
} LldpVlanNameTlv;

// Room in a port's message. 12 bytes.
typedef struct LldpOverload {
    uint32_t used_bytes;
    uint32_t free_bytes;
    uint32_t dropped_tlvs; // selected but left out, one bit each
} LldpOverload;

// Messages of a port. 28 bytes.
typedef struct LldpStatistics {
    uint32_t sent;
    uint32_t received;
    uint32_t discarded;
    uint32_t errors;
    uint32_t tlvs_discarded;
    uint32_t tlvs_unrecognized;
    uint32_t ageouts;
} LldpStatistics;

// Settings of a port. 16 bytes.
typedef struct LldpPortEntry {
    uint32_t mode;
    uint32_t tlvs;
    uint32_t pvid_enable;
    uint32_t neighbours;
} LldpPortEntry;

// Discovery as a whole: 0 off, 1 on.
int lldp_enable_set(uint32_t enable);
int lldp_enable_get(uint32_t* enable);

// A port: 0 off, 1 sends, 2 receives, 3 both.
int lldp_port_set(uint32_t port, uint32_t mode);
int lldp_port_get(uint32_t port, uint32_t* mode);

// Settings and number of neighbours of a port.
int lldp_portEntry_get(uint32_t port, LldpPortEntry* entry);

// Life of what is announced, as a multiple of the interval; interval, pause after a restart of a
// port, and least time between two messages, in seconds.
int lldp_holdtime_set(uint32_t multiple);
int lldp_tx_interval_set(uint32_t seconds);
int lldp_reinit_delay_set(uint32_t seconds);
int lldp_tx_delay_set(uint32_t seconds);
int lldp_tx_delay_get(uint32_t* seconds);

// Discovery packets while discovery is off: 0 filtered, 1 bridged, 2 flooded.
int lldp_disableAction_set(uint32_t action);

// Optional contents of a port's message, one bit each; its port VLAN id (0 off, 1 on) and the VLANs
// that it names.
int lldp_portTlvSel_set(uint32_t port, uint32_t tlvs);
int lldp_portTlvPvidEnable_set(uint32_t port, uint32_t enable);
int lldp_portTlvPvidEnable_get(uint32_t port, uint32_t* enable);
int lldp_portTlvVlanmask_set(uint32_t port, const VlanMask* vlans);
int lldp_portTlvVlanmask_get(uint32_t port, VlanMask* vlans);
int lldp_portTlvOverload_get(uint32_t port, LldpOverload* overload);

// What a port announces.
int lldp_portLocalEntryInfo_get(uint32_t port, LldpLocalEntry* entry);

// Neighbours of a port, from 0, and the VLANs that a neighbour names; forgetting them all; uptime
// at the last change of the table, in hundredths of a second.
int lldp_portRemoteEntryInfo_get(uint32_t port, uint32_t index, LldpRemoteEntry* entry);
int lldp_portRemoteVlanNameTlv_get(uint32_t port, uint32_t index, LldpVlanNameTlv* tlv);
int lldp_portRemoteEntry_clear(uint32_t port);
int lldp_remoteTableChangeTime_get(uint32_t* hundredths);

// Counters of all ports and of one.
int lldp_statistics_clear(void);
int lldp_statistic_get(uint32_t port, LldpStatistics* statistics);

#ifdef __cplusplus
}
#endif
