// The counters of a port are two tables: rows of the platform's own, and a call for each of RMON.
#include "sections/port/counters.h"

#include "json/json_document.h"
#include "platform/mib.h"

namespace {

enum { DIRECTION_COUNTERS = 6 };

const char* const direction_keys[DIRECTION_COUNTERS] = {
    "all", "ucast", "nucast", "discard", "mcast", "bcast",
};

// Rows of user_mibtbls, in the order of the keys.
const int rx_rows[DIRECTION_COUNTERS] = {0, 1, 2, 3, 8, 9};
const int tx_rows[DIRECTION_COUNTERS] = {4, 5, 6, 7, 10, 11};

struct RmonCounter {
    const char* key;
    MibGetter get;
};

const RmonCounter rmon_counters[] = {
    {"drop_events", sal_mib_etherStatsDropEvents_get},
    {"octets", sal_mib_etherStatsOctets_get},
    {"pkts", sal_mib_etherStatsPkts_get},
    {"broadcast_pkts", sal_mib_etherStatsBcastPkts_get},
    {"multicast_pkts", sal_mib_etherStatsMcastPkts_get},
    {"crc_align_errors", sal_mib_etherStatsCRCAlignErrs_get},
    {"under_size_pkts", sal_mib_etherStatsUnderSizePkts_get},
    {"over_size_pkts", sal_mib_etherStatsOverSizePkts_get},
    {"fragments", sal_mib_etherStatsFragments_get},
    {"jabbers", sal_mib_etherStatsJabbers_get},
    {"collisions", sal_mib_etherStatsCollisions_get},
    {"octets_0_64_pkts", sal_mib_etherStatsPkts64Octets_get},
    {"octets_65_127_pkts", sal_mib_etherStatsPkts65to127Octets_get},
    {"octets_128_255_pkts", sal_mib_etherStatsPkts128to255Octets_get},
    {"octets_256_511_pkts", sal_mib_etherStatsPkts256to511Octets_get},
    {"octets_512_1023_pkts", sal_mib_etherStatsPkts512to1023Octets_get},
    {"octets_1024_1518_pkts", sal_mib_etherStatsPkts1024to1518Octets_get},
};

using DirectionCounts = uint64_t[DIRECTION_COUNTERS];

int read_direction(int port, const int* rows, DirectionCounts& counts) {
    for (int i = 0; i < DIRECTION_COUNTERS; ++i) {
        if (int code = user_mibtbls.rows[rows[i]].get(port, &counts[i]))
            return code;
    }
    return 0;
}

void add_direction(cJSON* statistics, const char* name, const DirectionCounts& counts) {
    cJSON* direction = attachJsonObject(statistics, name);
    for (int i = 0; i < DIRECTION_COUNTERS; ++i)
        addJsonObjectLongLongUintItem(direction, direction_keys[i], counts[i]);
}

// Both directions are read before either is shown, so that they tell of one moment.
int add_interface_counters(cJSON* statistics, int port) {
    DirectionCounts rx = {};
    DirectionCounts tx = {};
    if (int code = read_direction(port, rx_rows, rx))
        return code;
    if (int code = read_direction(port, tx_rows, tx))
        return code;
    add_direction(statistics, "rx_bytes", rx);
    add_direction(statistics, "tx_bytes", tx);
    return 0;
}

int add_rmon_counters(cJSON* statistics, int port) {
    cJSON* rmon = attachJsonObject(statistics, "rmon");
    for (const RmonCounter& counter : rmon_counters) {
        uint64_t count = 0;
        if (int code = counter.get(port, &count))
            return code;
        addJsonObjectLongLongUintItem(rmon, counter.key, count);
    }
    return 0;
}

int fill_statistics(cJSON* statistics, int port) {
    if (int code = add_interface_counters(statistics, port))
        return code;
    return add_rmon_counters(statistics, port);
}

} // namespace

int add_port_statistics(cJSON* port_object, int port) {
    cJSON* statistics = createJsonObject();
    int code = fill_statistics(statistics, port);
    if (code)
        deleteJsonObject(statistics);
    else
        addJsonObject(port_object, "statistics", statistics);
    return code;
}
