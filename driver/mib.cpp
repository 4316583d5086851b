// Counters. A counter is 64 bits wide and grows until it is cleared.
#include "driver/mib.h"

#include "driver/shapes.h"

static_assert(sizeof(MibRecord) == 16, "the driver's record");

namespace {

int read_counter(uint32_t command, uint32_t subject, uint64_t* count) {
    if (!count)
        return REQUEST_NULL_POINTER;
    MibRecord record = {subject, 0, 0};
    if (int code = carry_record(command, &record))
        return code;
    *count = record.count;
    return 0;
}

int read_switch_counter(uint32_t command, uint64_t* count) {
    return read_counter(command, 0, count);
}

int read_port_counter(uint32_t command, uint32_t port, uint64_t* count) {
    if (int code = refuse(count != nullptr, port))
        return code;
    return read_counter(command, port, count);
}

} // namespace

// clang-format off
int rsd_mib_cntr_clr(uint32_t port) { return request_chip(2945, port); }
int rsd_mib_cntrGlobal_clr()        { return request_chip(2946); }
int rsd_mib_cntrDebug_clr()         { return 28; } // no request: 2947

int rsd_mib_etherStatsDropEvents_get(uint32_t port, uint64_t* count)             { return read_port_counter(3009, port, count); }
int rsd_mib_etherStatsOctets_get(uint32_t port, uint64_t* count)                 { return read_port_counter(3010, port, count); }
int rsd_mib_etherStatsPkts_get(uint32_t port, uint64_t* count)                   { return read_port_counter(3011, port, count); }
int rsd_mib_etherStatsBcastPkts_get(uint32_t port, uint64_t* count)              { return read_port_counter(3012, port, count); }
int rsd_mib_etherStatsMcastPkts_get(uint32_t port, uint64_t* count)              { return read_port_counter(3013, port, count); }
int rsd_mib_etherStatsCRCAlignErrs_get(uint32_t port, uint64_t* count)           { return read_port_counter(3014, port, count); }
int rsd_mib_etherStatsUnderSizePkts_get(uint32_t port, uint64_t* count)          { return read_port_counter(3015, port, count); }
int rsd_mib_etherStatsOverSizePkts_get(uint32_t port, uint64_t* count)           { return read_port_counter(3016, port, count); }
int rsd_mib_etherStatsFragments_get(uint32_t port, uint64_t* count)              { return read_port_counter(3017, port, count); }
int rsd_mib_etherStatsJabbers_get(uint32_t port, uint64_t* count)                { return read_port_counter(3018, port, count); }
int rsd_mib_etherStatsCollisions_get(uint32_t port, uint64_t* count)             { return read_port_counter(3019, port, count); }
int rsd_mib_etherStatsPkts64Octets_get(uint32_t port, uint64_t* count)           { return read_port_counter(3020, port, count); }
int rsd_mib_etherStatsPkts65to127Octets_get(uint32_t port, uint64_t* count)      { return read_port_counter(3021, port, count); }
int rsd_mib_etherStatsPkts128to255Octets_get(uint32_t port, uint64_t* count)     { return read_port_counter(3022, port, count); }
int rsd_mib_etherStatsPkts256to511Octets_get(uint32_t port, uint64_t* count)     { return read_port_counter(3023, port, count); }
int rsd_mib_etherStatsPkts512to1023Octets_get(uint32_t port, uint64_t* count)    { return read_port_counter(3024, port, count); }
int rsd_mib_etherStatsPkts1024to1518Octets_get(uint32_t port, uint64_t* count)   { return read_port_counter(3025, port, count); }
int rsd_mib_ifOutUcastPkts_get(uint32_t port, uint64_t* count)                   { return read_port_counter(3026, port, count); }
int rsd_mib_ifOutNUcastPkts_get(uint32_t port, uint64_t* count)                  { return read_port_counter(3027, port, count); }
int rsd_mib_ifOutOctets_get(uint32_t port, uint64_t* count)                      { return read_port_counter(3028, port, count); }
int rsd_mib_TXCRCCheckFailCnt_get(uint32_t port, uint64_t* count)                { return read_port_counter(3029, port, count); }
int rsd_mib_etherStatsDropInOverrun_get(uint32_t port, uint64_t* count)          { return read_port_counter(3030, port, count); }
int rsd_mib_dot1dTpPortInDiscards_get(uint32_t port, uint64_t* count)            { return read_port_counter(3031, port, count); }
int rsd_mib_dot1d_delayexceededdiscards_get(uint32_t port, uint64_t* count)      { return read_port_counter(3032, port, count); }
int rsd_mib_dot1d_tpHCPortInDiscards_get(uint32_t port, uint64_t* count)         { return read_port_counter(3033, port, count); }
int rsd_mib_dot1dTpLearnedEntryDiscards_get(uint64_t* count)                     { return read_switch_counter(3034, count); }
int rsd_mib_OutUnicastPktsCnt_get(uint32_t port, uint64_t* count)                { return read_port_counter(3035, port, count); }
int rsd_mib_OutMulticastPktsCnt_get(uint32_t port, uint64_t* count)              { return read_port_counter(3036, port, count); }
int rsd_mib_OutBroadcastPktsCnt_get(uint32_t port, uint64_t* count)              { return read_port_counter(3037, port, count); }
int rsd_mib_EgressLackResourceDrop_get(uint32_t port, uint64_t* count)           { return read_port_counter(3038, port, count); }
int rsd_mib_dot3StatsFCSErrors_get(uint32_t port, uint64_t* count)               { return read_port_counter(3039, port, count); }
int rsd_mib_dot3StatsSingleCollisionFrames_get(uint32_t port, uint64_t* count)   { return read_port_counter(3040, port, count); }
int rsd_mib_dot3StatsMultipleCollisionFrames_get(uint32_t port, uint64_t* count) { return read_port_counter(3041, port, count); }
int rsd_mib_dot3StatsDeferredTransmissions_get(uint32_t port, uint64_t* count)   { return read_port_counter(3042, port, count); }
int rsd_mib_dot3StatsLateCollisions_get(uint32_t port, uint64_t* count)          { return read_port_counter(3043, port, count); }
int rsd_mib_dot3StatsExcessiveCollisions_get(uint32_t port, uint64_t* count)     { return read_port_counter(3044, port, count); }
int rsd_mib_dot3StatsSymbolErrors_get(uint32_t port, uint64_t* count)            { return read_port_counter(3045, port, count); }
int rsd_mib_dot3_status_alignment_errors_get(uint32_t port, uint64_t* count)     { return read_port_counter(3046, port, count); }
int rsd_mib_dot3StatsFrameTooLongs_get(uint32_t port, uint64_t* count)           { return read_port_counter(3047, port, count); }
int rsd_mib_ifInOctets_get(uint32_t port, uint64_t* count)                       { return read_port_counter(3048, port, count); }
int rsd_mib_ifInUcastPkts_get(uint32_t port, uint64_t* count)                    { return read_port_counter(3049, port, count); }
int rsd_mib_ifInNUcastPkts_get(uint32_t port, uint64_t* count)                   { return read_port_counter(3050, port, count); }
int rsd_mib_ifInBroadcastPkts_get(uint32_t port, uint64_t* count)                { return read_port_counter(3051, port, count); }
int rsd_mib_ifInMulticastPkts_get(uint32_t port, uint64_t* count)                { return read_port_counter(3052, port, count); }
int rsd_mib_ifInDiscards_get(uint32_t port, uint64_t* count)                     { return read_port_counter(3053, port, count); }
int rsd_mib_ifOutMcastPkts_get(uint32_t port, uint64_t* count)                   { return read_port_counter(3054, port, count); }
int rsd_mib_ifOutBcastPkts_get(uint32_t port, uint64_t* count)                   { return read_port_counter(3055, port, count); }
int rsd_mib_dot3ControlInUnknownOpcodes_get(uint32_t port, uint64_t* count)      { return read_port_counter(3056, port, count); }
int rsd_mib_dot3OutPauseFrames_get(uint32_t port, uint64_t* count)               { return read_port_counter(3057, port, count); }
int rsd_mib_dot3InPauseFrames_get(uint32_t port, uint64_t* count)                { return read_port_counter(3058, port, count); }
int rsd_mib_FlowCtrlOnDropPktCnt_get(uint32_t port, uint64_t* count)             { return read_port_counter(3059, port, count); }
int rsd_mib_SmartTriggerHit0_get(uint32_t port, uint64_t* count)                 { return read_port_counter(3060, port, count); }
int rsd_mib_SmartTriggerHit1_get(uint32_t port, uint64_t* count)                 { return read_port_counter(3061, port, count); }
int rsd_mib_ifOutDiscards_get(uint32_t port, uint64_t* count)                    { return read_port_counter(3062, port, count); }
int rsd_mib_cpuStatsPkts_get(uint64_t* count)                                    { return read_switch_counter(3063, count); }
int rsd_mib_debug_globalCntr_get(uint32_t counter, uint64_t* count)              { return read_counter(3064, counter, count); }
// clang-format on
