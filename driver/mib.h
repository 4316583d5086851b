// Counters. A counter is 64 bits wide and grows until it is cleared.
// Commands from 2944 on.
//
// `port` is a zero-based logical port. On failure `count` is unchanged.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// The driver's record of a counter, 16 bytes.
typedef struct MibRecord {
    uint32_t port; // or the number of a debug counter
    uint32_t reserved;
    uint64_t count;
} MibRecord;

// Clears the counters of a port (the number is the driver's to judge), and those of the whole
// switch.
int rsd_mib_cntr_clr(uint32_t port);
int rsd_mib_cntrGlobal_clr(void);

// Makes no request, although it has a command, 2947. Always 28.
int rsd_mib_cntrDebug_clr(void);

// Traffic of a port by its remote-monitoring group: events, octets and packets received and, for
// the packet sizes, passed.
int rsd_mib_etherStatsDropEvents_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsOctets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsBcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsMcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsCRCAlignErrs_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsUnderSizePkts_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsOverSizePkts_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsFragments_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsJabbers_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsCollisions_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts64Octets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts65to127Octets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts128to255Octets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts256to511Octets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts512to1023Octets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsPkts1024to1518Octets_get(uint32_t port, uint64_t* count);
int rsd_mib_etherStatsDropInOverrun_get(uint32_t port, uint64_t* count);

// Traffic of a port by its interface group: octets, and packets by kind of address.
int rsd_mib_ifInOctets_get(uint32_t port, uint64_t* count);
int rsd_mib_ifInUcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifInNUcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifInBroadcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifInMulticastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifInDiscards_get(uint32_t port, uint64_t* count);
int rsd_mib_ifOutOctets_get(uint32_t port, uint64_t* count);
int rsd_mib_ifOutUcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifOutNUcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifOutMcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifOutBcastPkts_get(uint32_t port, uint64_t* count);
int rsd_mib_ifOutDiscards_get(uint32_t port, uint64_t* count);

// Packets sent as the queue engine counts them, and those that it dropped or could not check.
int rsd_mib_OutUnicastPktsCnt_get(uint32_t port, uint64_t* count);
int rsd_mib_OutMulticastPktsCnt_get(uint32_t port, uint64_t* count);
int rsd_mib_OutBroadcastPktsCnt_get(uint32_t port, uint64_t* count);
int rsd_mib_EgressLackResourceDrop_get(uint32_t port, uint64_t* count);
int rsd_mib_TXCRCCheckFailCnt_get(uint32_t port, uint64_t* count);
int rsd_mib_FlowCtrlOnDropPktCnt_get(uint32_t port, uint64_t* count);

// Frames that a port's bridge function discarded.
int rsd_mib_dot1dTpPortInDiscards_get(uint32_t port, uint64_t* count);
int rsd_mib_dot1d_delayexceededdiscards_get(uint32_t port, uint64_t* count);
int rsd_mib_dot1d_tpHCPortInDiscards_get(uint32_t port, uint64_t* count);

// Addresses that the switch could not learn for want of room. Switch-wide.
int rsd_mib_dot1dTpLearnedEntryDiscards_get(uint64_t* count);

// Errors and pauses of a port by its Ethernet-like group.
int rsd_mib_dot3StatsFCSErrors_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsSingleCollisionFrames_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsMultipleCollisionFrames_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsDeferredTransmissions_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsLateCollisions_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsExcessiveCollisions_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsSymbolErrors_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3_status_alignment_errors_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3StatsFrameTooLongs_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3ControlInUnknownOpcodes_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3OutPauseFrames_get(uint32_t port, uint64_t* count);
int rsd_mib_dot3InPauseFrames_get(uint32_t port, uint64_t* count);

// Packets that matched the chip's two packet triggers.
int rsd_mib_SmartTriggerHit0_get(uint32_t port, uint64_t* count);
int rsd_mib_SmartTriggerHit1_get(uint32_t port, uint64_t* count);

// Packets between the chip and the processor, switch-wide.
int rsd_mib_cpuStatsPkts_get(uint64_t* count);

// One of the chip's debug counters, by the chip's own number.
int rsd_mib_debug_globalCntr_get(uint32_t counter, uint64_t* count);

#ifdef __cplusplus
}
#endif
