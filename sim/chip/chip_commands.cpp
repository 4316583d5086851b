// The commands that the simulated chip only stores, in the order of their numbers.
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

template <std::size_t size>
constexpr StoredCommand text(std::uint32_t number, std::uint32_t written_by = 0) {
    return {number, 16 + sizeof(TextEntry<size>), 0, 16, false, written_by};
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
    value(1546),
    value(1547),
    value(1548),
    entry<GvrpInfo>(1601),
    entry<GvrpStatistics>(1603),
    entry<GvrpErrorStatistics>(1604),
    value(1606),
    // Multicast snooping
    entry<McastQuerier>(1675),
    value(1677),
    value(1678),
    entry<McastSourceFilter>(1683),
    entry<McastProfile>(1686),
    value(1687),
    entry<McastQuerier>(1745, 1675),
    // IP source guard
    value(1921),
    entry<IsgDatabase>(1926),
    value(1927),
    value(1988, 1927),
    // Layer-2 table
    entry<PortBitmap>(2055),
    words(2057, 1),
    words(2121, 0, 2057),
    // Link aggregation control protocol
    value(2177),
    value(2178),
    value(2181),
    value(2182),
    value(2183),
    value(2184),
    value(2241, 2177),
    value(2242, 2178),
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
    words(3064, 1),
    // Port mirroring
    words(3079, 1),
    words(3140, 0, 3079),
    // Multicast snooping for IPv6
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
    words(4486, 2),
    words(4487, 2),
    words(4488, 2),
    words(4489, 2),
    words(4490, 2),
    entry<VlanMask>(4493),
    words(4494, 1),
    words(4495, 2),
    words(4496, 1),
    words(4497, 1),
    words(4501, 1),
    words(4555, 1, 4488),
    words(4556, 1, 4489),
    words(4557, 1, 4490),
    words(4561, 0, 4497),
    words(4562, 1, 4490),
    words(4565, 0, 4494),
    words(4566, 1, 4495),
    words(4573, 1),
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

// What a clear compares of the arguments: the port's word, the VLAN's, or nothing.
constexpr StoredClear of_port(std::uint32_t number, std::uint32_t read) {
    return {number, read, 4, 8};
}
constexpr StoredClear of_vlan(std::uint32_t number, std::uint32_t read) {
    return {number, read, 8, 12};
}
constexpr StoredClear of_all(std::uint32_t number, std::uint32_t read) {
    return {number, read, 0, 0};
}

constexpr StoredClear clears[] = {
    of_port(520, 584),   of_vlan(521, 585),   of_port(650, 713),  of_port(1547, 1603),
    of_port(1548, 1604), of_port(2184, 2245), of_all(2438, 2503), of_port(2444, 2500),
    of_port(2444, 2501), of_port(2444, 2626), of_all(2947, 3064),
};

} // namespace

std::span<const StoredCommand> stored_commands() { return commands; }
std::span<const StoredClear> stored_clears() { return clears; }

const StoredCommand* stored_command(std::uint32_t number) {
    const StoredCommand* command =
        std::ranges::lower_bound(commands, number, {}, &StoredCommand::number);
    return command != std::end(commands) && command->number == number ? command : nullptr;
}

} // namespace sim
