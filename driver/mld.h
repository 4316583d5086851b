// Multicast snooping for IPv6: MLD.
// Commands from 3200 on.
#pragma once

#include <stdint.h>

#include "driver/mcast.h"

#ifdef __cplusplus
extern "C" {
#endif

// MLD snooping, and the suppression of reports that a router has already: 0 off, 1 on.
int mcast_mld_enable_set(uint32_t enable);
int mcast_mld_suppre_enable_set(uint32_t enable);

// State and counters.
int mcast_mld_info_get(McastInfo* info);
int mcast_mld_statistics_clear(void);

// How packets find their group: 0 by MAC address, 1 by IP address.
int mcast_mld_lookupMode_set(uint32_t mode);
int mcast_mld_lookupMode_get(uint32_t* mode);

// Removes all groups of a type: 0 learned, 1 static, 2 both.
int mcast_mld_group_del_byType(uint32_t type);

// Protocol version: 1 or 2.
int mcast_mld_operVersion_set(uint32_t version);

// Packets of a group that nobody asked for: 0 flood, 1 drop, 2 to the router ports.
int mcast_mld_unknMcastAction_set(uint32_t action);

// Sizes: entries, and static MAC addresses.
int mcast_mld_databaseSize_get(uint32_t* entries);
int mcast_mld_staticMacNum_get(uint32_t* entries);

#ifdef __cplusplus
}
#endif
