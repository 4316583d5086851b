// Multicast snooping for IPv6: MLD.
#include "driver/mld.h"

#include "driver/shapes.h"

// clang-format off
int mcast_mld_enable_set(uint32_t enable)          { return request_set(3201, enable); }
int mcast_mld_suppre_enable_set(uint32_t enable)   { return request_set(3202, enable); }
int mcast_mld_statistics_clear()                   { return request_clear(3203); }
int mcast_mld_lookupMode_set(uint32_t mode)        { return request_set(3204, mode); }
int mcast_mld_group_del_byType(uint32_t type)      { return request_set(3205, type); }
int mcast_mld_operVersion_set(uint32_t version)    { return request_set(3206, version); }
int mcast_mld_unknMcastAction_set(uint32_t action) { return request_set(3207, action); }

int mcast_mld_info_get(McastInfo* info)           { return request_entry_get(3265, info); }
int mcast_mld_lookupMode_get(uint32_t* mode)      { return request_get(3266, mode); }
int mcast_mld_databaseSize_get(uint32_t* entries) { return request_get(3267, entries); }
int mcast_mld_staticMacNum_get(uint32_t* entries) { return request_get(3268, entries); }
// clang-format on
