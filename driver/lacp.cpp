// Link aggregation control protocol.
#include "driver/lacp.h"

#include "driver/shapes.h"

static_assert(sizeof(LacpState) == 44, "the driver's record");
static_assert(sizeof(LacpCounters) == 20, "the driver's record");

// clang-format off
int lacp_enable_set(uint32_t enable)                          { return request_set(2177, enable); }
int lacp_system_priority_set(uint32_t priority)               { return request_set(2178, priority); }
int lacp_group_set(uint32_t group, const PortBitmap* members) { return request_index_entry_set(2179, group, members); }
int lacp_group_del(uint32_t group)                            { return request_index_clear(2180, group); }
int lacp_portActivity_set(uint32_t port, uint32_t active)     { return request_port_set(2181, port, active); }
int lacp_portPriority_set(uint32_t port, uint32_t priority)   { return request_port_set(2182, port, priority); }
int lacp_portTimeout_set(uint32_t port, uint32_t timeout)     { return request_port_set(2183, port, timeout); }
int lacp_portCounter_reset(uint32_t port)                     { return request_port_clear(2184, port); }

int lacp_enable_get(uint32_t* enable)                           { return request_get(2241, enable); }
int lacp_system_priority_get(uint32_t* priority)                { return request_get(2242, priority); }
int lacp_backupMember_get(uint32_t group, LacpState* state)     { return request_index_entry_get(2243, group, state); }
int lacp_port_state_get(uint32_t port, LacpState* state)        { return request_port_entry_get(2243, port, state); }
int lacp_portCounter_get(uint32_t port, LacpCounters* counters) { return request_port_entry_get(2245, port, counters); }
// clang-format on
