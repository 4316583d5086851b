// The commands that the simulated chip only stores; see chip_commands.h.
#include "sim/chip/chip_commands.h"

#include <algorithm>

#include "driver/acl.h"
#include "driver/acl_mgmt.h"
#include "driver/dai.h"
#include "driver/dhcp_snooping.h"
#include "driver/dot1x.h"
#include "driver/eee.h"
#include "driver/gvrp.h"
#include "driver/isg.h"
#include "driver/l2.h"
#include "driver/lacp.h"
#include "driver/lldp.h"
#include "driver/lldp_med.h"
#include "driver/mcast.h"
#include "driver/mcast_entry.h"
#include "driver/mld.h"
#include "driver/optical.h"
#include "driver/port.h"
#include "driver/port_security.h"
#include "driver/proto_vlan.h"
#include "driver/shapes.h"
#include "driver/stp.h"
#include "driver/sys.h"
#include "driver/vlan.h"
#include "driver/voice_vlan.h"

namespace sim {
namespace {

// A value in the fourth word; the three before it say what it is the value of.
constexpr StoredCommand value(std::uint32_t number, std::uint32_t written_by = 0) {
    return {number, 16, 0, 12, false, written_by};
}

// Four words of which the first `arguments` are those of a read.
constexpr StoredCommand
words(std::uint32_t number, std::size_t arguments, std::uint32_t written_by = 0) {
    return {number, 16, 0, 4 * arguments, false, written_by};
}

// An entry behind the four words.
template <class Entry>
constexpr StoredCommand entry(std::uint32_t number, std::uint32_t written_by = 0) {
    return {number, 16 + sizeof(Entry), 0, 16, false, written_by};
}

// The same, of a list that has an end.
template <class Entry>
constexpr StoredCommand listed(std::uint32_t number, std::uint32_t written_by = 0) {
    return {number, 16 + sizeof(Entry), 0, 16, true, written_by};
}

// An entry that is found by its own bytes from `begin` to `end`.
template <class Entry>
constexpr StoredCommand
found(std::uint32_t number, std::size_t begin, std::size_t end, std::uint32_t written_by = 0) {
    return {number, 16 + sizeof(Entry), 16 + begin, 16 + end, true, written_by};
}

template <std::size_t size>
constexpr StoredCommand text(std::uint32_t number, std::uint32_t written_by = 0) {
    return {number, 16 + sizeof(TextEntry<size>), 0, 16, false, written_by};
}

// The record of the access lists; what is bound and entered there is the platform library's matter.
constexpr StoredCommand acl(std::uint32_t number) {
    return {number, sizeof(AclRecord), 0, sizeof(AclRecord), false, 0};
}

constexpr StoredCommand commands[] = {
    // The system
    words(1, 2),
    entry<SysInfo>(3),
    words(5, 1),
    entry<SysMac>(65),
    entry<SysMac>(66),
    entry<SysInfo>(67, 3),
    words(68, 0),
    words(69, 0),
    words(70, 0),
    words(71, 0),
    words(72, 0, 5),
    // Access control lists
    acl(257),
    acl(258),
    acl(259),
    acl(260),
    acl(261),
    acl(262),
    acl(263),
    acl(321),
    acl(322),
    acl(323),
    acl(324),
    acl(325),
    acl(326),
    acl(329),
    // Dynamic ARP inspection
    value(513),
    value(514),
    value(515),
    value(516),
    value(517),
    value(518),
    value(519),
    value(520),
    value(521),
    value(522),
    value(577, 513),
    value(578, 514),
    value(579, 515),
    value(580, 516),
    value(581, 517),
    value(582, 518),
    value(583, 519),
    entry<DaiMib>(584),
    entry<DaiMib>(585),
    // DHCP snooping and the relay agent option (82)
    value(641),
    value(642),
    value(643),
    value(644),
    value(645),
    value(646),
    value(647),
    text<DHCP_OPTION_TEXT_SIZE>(648),
    entry<DhcpCircuitId>(649),
    value(650),
    value(651),
    value(705, 641),
    value(706, 642),
    value(707, 643),
    value(708, 644),
    value(709, 645),
    value(710, 646),
    value(711, 647),
    text<DHCP_OPTION_TEXT_SIZE>(712, 648),
    entry<DhcpSnoopingMib>(713),
    // Port-based network access control (802.1X)
    value(770),
    value(772),
    value(773),
    value(774),
    entry<Dot1xRadiusServer>(775),
    value(777),
    value(778),
    value(779),
    value(780),
    value(781),
    value(782),
    value(834),
    value(835),
    value(836, 772),
    value(837, 773),
    value(838),
    entry<Dot1xRadiusStatistics>(839),
    listed<Dot1xHost>(840),
    value(841),
    // Denial-of-service guards
    words(897, 2),
    words(898, 1),
    words(899, 1),
    words(900, 1),
    words(901, 1),
    words(902, 2),
    words(903, 2),
    // Energy-efficient Ethernet
    words(1153, 2),
    entry<PortBitmap>(1154),
    words(1217, 1, 1153),
    words(1218, 1),
    entry<PortBitmap>(1219, 1154),
    // Fibre modules
    words(1345, 1),
    words(1346, 1),
    words(1347, 1),
    // Dynamic VLAN registration (GVRP)
    value(1537),
    value(1538),
    value(1539),
    value(1540),
    entry<GvrpVlan>(1541),
    value(1544),
    entry<GvrpVlan>(1545),
    value(1546),
    value(1547),
    value(1548),
    entry<GvrpInfo>(1601),
    listed<GvrpVlan>(1602, 1545),
    entry<GvrpStatistics>(1603),
    entry<GvrpErrorStatistics>(1604),
    entry<VlanMask>(1605),
    value(1606),
    value(1607),
    // Multicast snooping
    value(1665),
    value(1666),
    value(1667),
    value(1668),
    value(1669),
    entry<McastSnooping>(1670),
    value(1671),
    value(1672),
    value(1673),
    value(1674),
    entry<McastQuerier>(1675),
    value(1676),
    value(1677),
    value(1678),
    entry<PortBitmap>(1679),
    entry<PortBitmap>(1680),
    entry<McastGroup>(1681),
    entry<McastMac>(1682),
    entry<McastSourceFilter>(1683),
    value(1684),
    value(1685),
    entry<McastProfile>(1686),
    value(1687),
    value(1688),
    value(1729),
    value(1730, 1666),
    entry<McastInfo>(1732),
    entry<McastPortStatistics>(1733),
    value(1734, 1667),
    value(1735),
    value(1736),
    value(1737),
    value(1738),
    listed<McastGroup>(1739),
    entry<McastSnooping>(1740, 1670),
    entry<VlanMask>(1741),
    entry<McastRouter>(1742),
    listed<McastGroup>(1743),
    entry<PortBitmap>(1744, 1680),
    entry<McastQuerier>(1745, 1675),
    listed<McastMac>(1746, 1682),
    found<McastMac>(
        1747, offsetof(McastMac, vlan), offsetof(McastMac, mac) + sizeof McastMac::mac, 1682),
    // The chip's multicast entries, walked from first to last
    listed<L2McastEntry>(1857),
    found<L2McastEntry>(1858, 0, sizeof(L2McastEntry)),
    listed<IpMcastEntry>(1859),
    found<IpMcastEntry>(1860, 0, sizeof(IpMcastEntry)),
    // IP source guard
    value(1921),
    entry<IsgBinding>(1922),
    entry<IsgBinding>(1923),
    entry<IsgBinding>(1924),
    value(1925),
    entry<IsgDatabase>(1926),
    value(1927),
    listed<IsgBinding>(1985),
    value(1986),
    value(1987),
    value(1988, 1927),
    // Layer-2 table
    words(2049, 0),
    words(2050, 1),
    entry<L2MacEntry>(2051),
    entry<L2MacEntry>(2052),
    entry<L2MacEntry>(2053),
    entry<L2MacEntry>(2054),
    entry<PortBitmap>(2055),
    words(2057, 1),
    words(2113, 0),
    words(2114, 0),
    found<L2MacEntry>(
        2115, offsetof(L2MacEntry, vlan), offsetof(L2MacEntry, mac) + sizeof L2MacEntry::mac, 2051),
    listed<L2MacEntry>(2116),
    listed<L2MacBatch>(2117),
    listed<L2MacEntry>(2118),
    found<L2MacEntry>(
        2119, offsetof(L2MacEntry, vlan), offsetof(L2MacEntry, mac) + sizeof L2MacEntry::mac, 2053),
    words(2121, 0, 2057),
    words(2123, 0),
    words(2124, 0),
    words(2125, 0),
    // Link aggregation control protocol
    value(2177),
    value(2178),
    entry<PortBitmap>(2179),
    value(2180),
    value(2181),
    value(2182),
    value(2183),
    value(2184),
    value(2241, 2177),
    value(2242, 2178),
    entry<LacpState>(2243),
    entry<LacpCounters>(2245),
    // LEDs
    words(2305, 2),
    words(2306, 1),
    words(2307, 1),
    words(2308, 1),
    words(2369, 1, 2305),
    // Link layer discovery
    value(2433),
    value(2434),
    value(2435),
    value(2436),
    value(2437),
    value(2438),
    value(2439),
    value(2440),
    value(2441),
    entry<VlanMask>(2442),
    value(2443),
    value(2444),
    value(2497, 2433),
    value(2498, 2434),
    entry<LldpLocalEntry>(2499),
    listed<LldpRemoteEntry>(2500),
    listed<LldpVlanNameTlv>(2501),
    entry<LldpOverload>(2502),
    entry<LldpStatistics>(2503),
    entry<LldpPortEntry>(2504),
    value(2505, 2441),
    entry<VlanMask>(2506, 2442),
    value(2507, 2443),
    value(2510),
    // Link layer discovery for media endpoints
    value(2561),
    entry<LldpMedPolicy>(2562),
    value(2563),
    value(2564),
    value(2565),
    value(2566),
    entry<LldpMedLocation>(2567),
    entry<LldpMedInventory>(2568),
    entry<LldpMedEntry>(2625),
    listed<LldpMedEntry>(2626),
    value(2627, 2563),
    value(2628, 2564),
    value(2629, 2565),
    value(2630, 2566),
    entry<LldpMedLocation>(2631, 2567),
    entry<LldpMedInventory>(2632, 2568),
    // Management access lists
    text<ACL_MGMT_NAME_SIZE>(2817),
    text<ACL_MGMT_NAME_SIZE>(2818),
    entry<AclMgmtEntry>(2819),
    entry<AclMgmtEntry>(2820),
    entry<AclMgmtClass>(2821),
    entry<AclMgmtClass>(2822),
    words(2881, 0),
    text<ACL_MGMT_NAME_SIZE>(2882),
    found<AclMgmtCount>(
        2883, offsetof(AclMgmtCount, name),
        offsetof(AclMgmtCount, name) + sizeof AclMgmtCount::name),
    words(2884, 0),
    found<AclMgmtEntry>(
        2885, offsetof(AclMgmtEntry, name),
        offsetof(AclMgmtEntry, priority) + sizeof AclMgmtEntry::priority, 2819),
    entry<AclMgmtClass>(2886, 2821),
    // Counters. A counter is 64 bits wide and grows until it is cleared
    words(2947, 0),
    words(3064, 1),
    // Port mirroring
    words(3079, 1),
    words(3140, 0, 3079),
    // Multicast snooping for IPv6
    value(3201),
    value(3202),
    value(3203),
    value(3204),
    value(3205),
    value(3206),
    value(3207),
    entry<McastInfo>(3265),
    value(3266, 3204),
    value(3267),
    value(3268),
    // Fibre modules
    entry<OpticalData>(3393),
    // Ports
    words(3458, 2),
    words(3459, 2),
    words(3460, 2),
    words(3461, 2),
    words(3462, 2),
    words(3463, 2),
    words(3464, 3),
    words(3465, 2),
    text<PORT_DESCRIPTION_SIZE>(3466),
    words(3467, 2),
    words(3468, 1),
    words(3469, 2),
    words(3470, 2),
    words(3471, 2),
    words(3472, 2),
    words(3524, 1, 3459),
    words(3525, 1),
    words(3526, 1, 3460),
    words(3529, 1, 3465),
    words(3530, 1),
    words(3532, 1, 3463),
    words(3533, 1, 3464),
    words(3534, 1, 3470),
    words(3535, 1),
    words(3536, 1, 3467),
    words(3537, 0, 3468),
    words(3538, 2),
    words(3539, 1, 3538),
    words(3540, 1),
    words(3544, 1),
    words(3545, 1),
    words(3546, 1, 3471),
    // Port security
    words(3586, 2),
    entry<PortSecurity>(3587),
    words(3588, 2),
    words(3589, 2),
    entry<PortSecurityGlobal>(3649),
    words(3650, 1, 3586),
    entry<PortSecurity>(3651, 3587),
    words(3652, 1, 3588),
    words(3653, 1, 3589),
    words(3654, 1),
    // Quality of service
    words(3713, 1),
    words(3714, 1),
    words(3715, 2),
    words(3716, 3),
    words(3717, 2),
    words(3718, 2),
    words(3719, 2),
    words(3720, 2),
    words(3721, 2),
    words(3722, 2),
    words(3723, 2),
    words(3724, 2),
    words(3725, 2),
    words(3726, 2),
    words(3777, 0),
    // Rates
    words(3841, 3),
    words(3842, 3),
    words(3843, 2),
    words(3844, 1),
    words(3845, 1),
    words(3846, 2),
    words(3847, 2),
    words(3848, 1),
    words(3849, 2),
    words(3850, 2),
    words(3851, 2),
    words(3852, 1),
    words(3853, 2),
    words(3854, 3),
    words(3855, 3),
    words(3856, 2),
    words(3857, 3),
    words(3858, 1),
    words(3859, 1),
    words(3860, 2),
    words(3861, 2),
    words(3907, 2, 3841),
    words(3908, 0, 3844),
    words(3909, 0, 3845),
    words(3910, 1, 3846),
    words(3912, 0, 3848),
    words(3913, 1, 3847),
    words(3914, 1, 3850),
    words(3916, 0, 3852),
    words(3917, 1, 3851),
    words(3919, 2, 3855),
    words(3920, 2, 3854),
    words(3921, 2, 3857),
    words(3922, 0, 3858),
    words(3923, 0, 3859),
    words(3924, 0, 3860),
    words(3925, 1, 3861),
    words(3926, 0),
    // Spanning tree
    value(3969),
    value(3970),
    value(3971),
    value(3972),
    value(3973),
    value(3974),
    value(3975),
    value(3976),
    value(3977),
    value(3978),
    value(3979),
    value(3980),
    value(3981),
    value(3982),
    value(3983),
    value(3984),
    value(3985),
    text<STP_NAME_SIZE>(3986),
    value(3987),
    value(3988),
    entry<VlanMask>(3989),
    value(3990),
    value(3991),
    value(3992),
    value(4033, 3969),
    value(4034, 3970),
    value(4035, 3971),
    value(4036, 3972),
    value(4037, 3973),
    value(4038, 3974),
    value(4039, 3975),
    value(4040, 3976),
    value(4041, 3977),
    value(4042, 3978),
    value(4043, 3979),
    value(4044, 3980),
    value(4045, 3981),
    value(4046, 3982),
    value(4047, 3983),
    value(4048, 3984),
    value(4049, 3985),
    text<STP_NAME_SIZE>(4050, 3986),
    value(4051, 3987),
    value(4052, 3988),
    value(4054, 3990),
    value(4055, 3991),
    value(4056, 3992),
    entry<StpTreeInfo>(4057),
    entry<StpPortInfo>(4058),
    entry<StpMstInfo>(4059),
    entry<StpMstPortInfo>(4060),
    entry<StpMstPortMessages>(4061),
    // Link aggregation in the chip. Groups (trunks) are numbered from 0
    words(4357, 1),
    // VLANs
    words(4481, 1),
    words(4482, 1),
    words(4483, 1),
    entry<ChipVlan>(4484),
    text<CHIP_VLAN_NAME_SIZE>(4485),
    words(4486, 2),
    words(4487, 2),
    words(4488, 2),
    words(4489, 2),
    words(4490, 2),
    entry<VlanMask>(4491),
    entry<VlanMask>(4492),
    entry<VlanMask>(4493),
    words(4494, 1),
    words(4495, 2),
    words(4496, 1),
    words(4497, 1),
    words(4501, 1),
    words(4545, 0, 4481),
    words(4546, 1),
    entry<ChipVlan>(4547, 4484),
    words(4549, 0),
    words(4550, 1),
    entry<ChipVlan>(4551),
    listed<ChipVlan>(4552),
    words(4555, 1, 4488),
    words(4556, 1, 4489),
    words(4557, 1, 4490),
    entry<VlanMask>(4558),
    words(4559, 2),
    words(4560, 2),
    words(4561, 0, 4497),
    words(4562, 1),
    words(4563, 2),
    words(4564, 2),
    words(4565, 0, 4494),
    words(4566, 1, 4495),
    words(4567, 0),
    words(4568, 1),
    words(4573, 1),
    words(4574, 0),
    // Voice VLAN
    value(4609),
    value(4610),
    value(4611),
    value(4612),
    value(4613),
    value(4614),
    value(4615),
    entry<VoiceVlanPrefix>(4617),
    value(4673, 4609),
    value(4674, 4610),
    value(4675, 4611),
    value(4676, 4612),
    value(4678, 4614),
    // VLANs by protocol
    entry<ProtoGroup>(4737),
    words(4738, 3),
    words(4739, 2),
};

} // namespace

std::span<const StoredCommand> stored_commands() { return commands; }

const StoredCommand* stored_command(std::uint32_t number) {
    const StoredCommand* command =
        std::ranges::lower_bound(commands, number, {}, &StoredCommand::number);
    return command != std::end(commands) && command->number == number ? command : nullptr;
}

} // namespace sim
