// Platform library: traffic counters. A counter is 64 bits wide and grows until it is cleared.
//
// `port` is a zero-based logical port. Calls return 0 or a platform code; a failing one leaves its
// output unchanged.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int (*MibGetter)(int port, uint64_t* count);

typedef struct MibRow {
    const char* descriptor; // the counter's name
    MibGetter get;
} MibRow;

typedef struct MibTable {
    uint32_t row_count;
    const MibRow* rows;
} MibTable;

// The interface counters. Rows: 0 octets received, and packets received 1 to one address, 2 to
// several, 3 discarded; 4 to 7 the same sent; packets 8 to groups and 9 to all received, 10 and 11
// the same sent.
extern const MibTable user_mibtbls;

enum { MIB_ROWS = 12 };

// Clears the counters of a port.
int sal_mib_cntr_clr(int port);

// The remote-monitoring group of a port.
int sal_mib_etherStatsDropEvents_get(int port, uint64_t* count);
int sal_mib_etherStatsOctets_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts_get(int port, uint64_t* count);
int sal_mib_etherStatsBcastPkts_get(int port, uint64_t* count);
int sal_mib_etherStatsMcastPkts_get(int port, uint64_t* count);
int sal_mib_etherStatsCRCAlignErrs_get(int port, uint64_t* count);
int sal_mib_etherStatsUnderSizePkts_get(int port, uint64_t* count);
int sal_mib_etherStatsOverSizePkts_get(int port, uint64_t* count);
int sal_mib_etherStatsFragments_get(int port, uint64_t* count);
int sal_mib_etherStatsJabbers_get(int port, uint64_t* count);
int sal_mib_etherStatsCollisions_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts64Octets_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts65to127Octets_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts128to255Octets_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts256to511Octets_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts512to1023Octets_get(int port, uint64_t* count);
int sal_mib_etherStatsPkts1024to1518Octets_get(int port, uint64_t* count);

#ifdef __cplusplus
}
#endif
