// Platform library: traffic counters, which are the chip's and come through the driver.
#include "sim/library/mib.h"

#include "driver/mib.h"
#include "platform/mib.h"
#include "sim/library/call.h"

void sim::count_traffic(Switch& s) {
    double now = board().clock.running();
    if (now > s.counted_until)
        s.chip.advance(now - s.counted_until);
    s.counted_until = now;
}

using namespace sim;

namespace {

using DriverGetter = int (*)(uint32_t port, uint64_t* count);

int counter(const char* name, int port, DriverGetter get, uint64_t* count) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            count_traffic(s);
            return get(static_cast<uint32_t>(port), count);
        },
        port);
}

// Row `row` of user_mibtbls, traced under its place there.
struct Row {
    const char* descriptor;
    const char* traced_as;
    DriverGetter get;
};

constexpr Row rows[MIB_ROWS] = {
    {"ifInOctets", "user_mibtbls[0]", rsd_mib_ifInOctets_get},
    {"ifInUcastPkts", "user_mibtbls[1]", rsd_mib_ifInUcastPkts_get},
    {"ifInNUcastPkts", "user_mibtbls[2]", rsd_mib_ifInNUcastPkts_get},
    {"ifInDiscards", "user_mibtbls[3]", rsd_mib_ifInDiscards_get},
    {"ifOutOctets", "user_mibtbls[4]", rsd_mib_ifOutOctets_get},
    {"ifOutUcastPkts", "user_mibtbls[5]", rsd_mib_ifOutUcastPkts_get},
    {"ifOutNUcastPkts", "user_mibtbls[6]", rsd_mib_ifOutNUcastPkts_get},
    {"ifOutDiscards", "user_mibtbls[7]", rsd_mib_ifOutDiscards_get},
    {"ifInMulticastPkts", "user_mibtbls[8]", rsd_mib_ifInMulticastPkts_get},
    {"ifInBroadcastPkts", "user_mibtbls[9]", rsd_mib_ifInBroadcastPkts_get},
    {"ifOutMulticastPkts", "user_mibtbls[10]", rsd_mib_ifOutMcastPkts_get},
    {"ifOutBroadcastPkts", "user_mibtbls[11]", rsd_mib_ifOutBcastPkts_get},
};

template <int row> int row_get(int port, uint64_t* count) {
    return counter(rows[row].traced_as, port, rows[row].get, count);
}

template <int row> constexpr MibRow exported() { return {rows[row].descriptor, row_get<row>}; }

const MibRow exported_rows[MIB_ROWS] = {
    exported<0>(), exported<1>(), exported<2>(), exported<3>(), exported<4>(),  exported<5>(),
    exported<6>(), exported<7>(), exported<8>(), exported<9>(), exported<10>(), exported<11>(),
};

} // namespace

const MibTable user_mibtbls = {MIB_ROWS, exported_rows};

int sal_mib_cntr_clr(int port) {
    return call(
        "sal_mib_cntr_clr",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            count_traffic(s);
            return rsd_mib_cntr_clr(static_cast<uint32_t>(port));
        },
        port);
}

// clang-format off
int sal_mib_etherStatsDropEvents_get(int port, uint64_t* count)           { return counter(__func__, port, rsd_mib_etherStatsDropEvents_get, count); }
int sal_mib_etherStatsOctets_get(int port, uint64_t* count)               { return counter(__func__, port, rsd_mib_etherStatsOctets_get, count); }
int sal_mib_etherStatsPkts_get(int port, uint64_t* count)                 { return counter(__func__, port, rsd_mib_etherStatsPkts_get, count); }
int sal_mib_etherStatsBcastPkts_get(int port, uint64_t* count)            { return counter(__func__, port, rsd_mib_etherStatsBcastPkts_get, count); }
int sal_mib_etherStatsMcastPkts_get(int port, uint64_t* count)            { return counter(__func__, port, rsd_mib_etherStatsMcastPkts_get, count); }
int sal_mib_etherStatsCRCAlignErrs_get(int port, uint64_t* count)         { return counter(__func__, port, rsd_mib_etherStatsCRCAlignErrs_get, count); }
int sal_mib_etherStatsUnderSizePkts_get(int port, uint64_t* count)        { return counter(__func__, port, rsd_mib_etherStatsUnderSizePkts_get, count); }
int sal_mib_etherStatsOverSizePkts_get(int port, uint64_t* count)         { return counter(__func__, port, rsd_mib_etherStatsOverSizePkts_get, count); }
int sal_mib_etherStatsFragments_get(int port, uint64_t* count)            { return counter(__func__, port, rsd_mib_etherStatsFragments_get, count); }
int sal_mib_etherStatsJabbers_get(int port, uint64_t* count)              { return counter(__func__, port, rsd_mib_etherStatsJabbers_get, count); }
int sal_mib_etherStatsCollisions_get(int port, uint64_t* count)           { return counter(__func__, port, rsd_mib_etherStatsCollisions_get, count); }
int sal_mib_etherStatsPkts64Octets_get(int port, uint64_t* count)         { return counter(__func__, port, rsd_mib_etherStatsPkts64Octets_get, count); }
int sal_mib_etherStatsPkts65to127Octets_get(int port, uint64_t* count)    { return counter(__func__, port, rsd_mib_etherStatsPkts65to127Octets_get, count); }
int sal_mib_etherStatsPkts128to255Octets_get(int port, uint64_t* count)   { return counter(__func__, port, rsd_mib_etherStatsPkts128to255Octets_get, count); }
int sal_mib_etherStatsPkts256to511Octets_get(int port, uint64_t* count)   { return counter(__func__, port, rsd_mib_etherStatsPkts256to511Octets_get, count); }
int sal_mib_etherStatsPkts512to1023Octets_get(int port, uint64_t* count)  { return counter(__func__, port, rsd_mib_etherStatsPkts512to1023Octets_get, count); }
int sal_mib_etherStatsPkts1024to1518Octets_get(int port, uint64_t* count) { return counter(__func__, port, rsd_mib_etherStatsPkts1024to1518Octets_get, count); }
// clang-format on
