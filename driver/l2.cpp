// Layer-2 table: MAC addresses.
#include "driver/l2.h"

#include "driver/shapes.h"

static_assert(sizeof(L2MacEntry) == 36, "the driver's record");
static_assert(sizeof(L2MacBatch) == 1156, "the driver's record");

// clang-format off
int rsd_l2_macEntry_clear()                                                    { return request_chip(2049); }
int rsd_l2_macEntry_clear_byPort(uint32_t port)                                { return request_chip(2050, port); }
int rsd_l2_macEntry_add(const L2MacEntry* entry)                               { return request_chip_entry_set(2051, entry); }
int rsd_l2_macEntry_del(const L2MacEntry* entry)                               { return request_chip_entry_set(2052, entry); }
int rsd_l2_secure_macEntry_add(const L2MacEntry* entry)                        { return request_chip_entry_set(2053, entry); }
int rsd_l2_secure_macEntry_del(const L2MacEntry* entry)                        { return request_chip_entry_set(2054, entry); }
int rsd_l2_lookupMissFloodPortMask_set(uint32_t kind, const PortBitmap* ports) { return request_chip_entry_set(2055, ports, kind); }
int rsd_l2_aging_set(uint32_t seconds)                                         { return request_chip(2057, seconds); }

int rsd_l2_macTbl_generate(uint32_t* entries)                     { return request_chip(2113, entries); }
int rsd_l2_macTbl_size_get(uint32_t* entries)                     { return request_chip(2114, entries); }
int rsd_l2_macEntry_search(L2MacEntry* entry)                     { return request_chip_entry_find(2115, entry); }
int rsd_l2_macEntry_get(uint32_t index, L2MacEntry* entry)        { return request_chip_entry_get(2116, entry, index); }
int rsd_l2_macEntry_batch_get(uint32_t first, L2MacBatch* batch)  { return request_chip_entry_get(2117, batch, first); }
int rsd_l2_secure_macEntry_get(uint32_t index, L2MacEntry* entry) { return request_chip_entry_get(2118, entry, index); }
int rsd_l2_secure_macEntry_search(L2MacEntry* entry)              { return request_chip_entry_find(2119, entry); }
int rsd_l2_aging_get(uint32_t* seconds)                           { return request_chip(2121, seconds); }
int rsd_l2_maxEntryNum_get(uint32_t* entries)                     { return request_chip(2123, entries); }
int rsd_l2_userMaxEntryNum_get(uint32_t* entries)                 { return request_chip(2124, entries); }
int rsd_l2_disableLearningNum_get(uint32_t* ports)                { return request_chip(2125, ports); }
// clang-format on
