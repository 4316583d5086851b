// The chip's multicast entries, walked from first to last.
#include "driver/mcast_entry.h"

#include "driver/shapes.h"

static_assert(sizeof(L2McastEntry) == 28, "the driver's record");
static_assert(sizeof(IpMcastEntry) == 28, "the driver's record");

// clang-format off
int rsd_l2McastEntry_getFirst(L2McastEntry* entry) { return request_chip_entry_get(1857, entry); }
int rsd_l2McastEntry_getNext(L2McastEntry* entry)  { return request_chip_entry_find(1858, entry); }
int rsd_ipMcastEntry_getFirst(IpMcastEntry* entry) { return request_chip_entry_get(1859, entry); }
int rsd_ipMcastEntry_getNext(IpMcastEntry* entry)  { return request_chip_entry_find(1860, entry); }
// clang-format on
