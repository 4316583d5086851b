// IP source guard: bindings of address, port and VLAN.
#include "driver/isg.h"

#include "driver/shapes.h"

static_assert(sizeof(IsgBinding) == 32, "the driver's record");
static_assert(sizeof(IsgDatabase) == 260, "the driver's record");

// clang-format off
int isg_port_enable_set(uint32_t port, uint32_t mode)         { return request_port_set(1921, port, mode); }
int isg_bindingEntry_set(const IsgBinding* binding)           { return request_entry_set(1922, binding); }
int isg_bindingEntry_del(const IsgBinding* binding)           { return request_entry_set(1923, binding); }
int isg_bindingEntryDhcp_del(const IsgBinding* binding)       { return request_entry_set(1924, binding); }
int isg_port_maxEntryNum_set(uint32_t port, uint32_t entries) { return request_port_set(1925, port, entries); }
int isg_db_set(const IsgDatabase* database)                   { return request_entry_set(1926, database); }
int isg_db_timer_set(uint32_t seconds)                        { return request_set(1927, seconds); }

int isg_bindingEntryByIndex_get(uint32_t index, IsgBinding* binding) { return request_index_entry_get(1985, index, binding); }
int isg_port_currentEntryNum_get(uint32_t port, uint32_t* entries)   { return request_port_get(1986, port, entries); }
int isg_bindingMaxEntryNum_get(uint32_t* entries)                    { return request_get(1987, entries); }
int isg_db_timer_get(uint32_t* seconds)                              { return request_get(1988, seconds); }
// clang-format on
