// Counters of the chip, and how traffic makes them grow.
#include <algorithm>
#include <array>
#include <utility>

#include "driver/mib.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

enum Counter : std::uint32_t { // by the number of its read
    all_octets = 3010,         // remote monitoring
    all_packets = 3011,
    all_broadcast = 3012,
    all_multicast = 3013,
    oversize = 3016,
    first_packet_size = 3020, // 64 octets, then 65 to 127 and so on
    tx_unicast = 3026,
    tx_not_unicast = 3027,
    tx_octets = 3028,
    address_room_discards = 3034,
    queued_unicast = 3035,
    queued_multicast = 3036,
    queued_broadcast = 3037,
    rx_octets = 3048,
    rx_unicast = 3049,
    rx_not_unicast = 3050,
    rx_broadcast = 3051,
    rx_multicast = 3052,
    tx_multicast = 3054,
    tx_broadcast = 3055,
    cpu_packets = 3063,
};
constexpr std::uint32_t first_counter = 3009, last_counter = 3063;

bool is_switch_counter(std::uint32_t command) {
    return command == address_room_discards || command == cpu_packets;
}

template <std::uint32_t command> int get_counter(ChipState& chip, MibRecord& record) {
    ChipPort* port = port_at(chip, record.port);
    if (!port && !is_switch_counter(command))
        return code_no_port;
    auto& counters = is_switch_counter(command) ? chip.counters : port->counters;
    auto counter = counters.find(command);
    record.count = counter == counters.end() ? 0 : counter->second;
    return code_ok;
}

int clear_counters(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    port->counters.clear();
    return code_ok;
}

int clear_all_counters(ChipState& chip, ChipWords&) {
    chip.counters.clear();
    for (ChipPort& port : chip.ports)
        port.counters.clear();
    return code_ok;
}

// The counter of a packet's size: at most 64 octets, 127, 255, 511, 1023, 1518, and above.
std::uint32_t size_counter(std::uint32_t bytes) {
    constexpr std::array<std::uint32_t, 6> limits = {64, 127, 255, 511, 1023, 1518};
    auto limit = std::ranges::lower_bound(limits, bytes);
    if (limit == limits.end())
        return oversize;
    return first_packet_size + static_cast<std::uint32_t>(limit - limits.begin());
}

// New packets of one direction, by where they go.
struct Packets {
    std::uint64_t all, multicast, broadcast;
    std::uint64_t unicast() const { return all - multicast - broadcast; }
    std::uint64_t not_unicast() const { return multicast + broadcast; }
};

// The shares are those of all packets since the start, so slow traffic loses none of them; the one
// of broadcast is moved by half a packet, so that no packet is of both.
std::uint64_t multicast_share(std::uint64_t packets) { return packets * 6 / 100; }
std::uint64_t broadcast_share(std::uint64_t packets) { return (packets * 4 + 50) / 100; }

Packets next_packets(ChipFlow& flow, double rate, double seconds) {
    const auto before = static_cast<std::uint64_t>(flow.packets);
    flow.packets += rate * seconds;
    const auto after = static_cast<std::uint64_t>(flow.packets);
    return {
        after - before, multicast_share(after) - multicast_share(before),
        broadcast_share(after) - broadcast_share(before)};
}

template <std::size_t... place>
constexpr std::array<ChipHandler, sizeof...(place)> counter_reads(std::index_sequence<place...>) {
    return {handler<get_counter<first_counter + place>>(first_counter + place)...};
}

constexpr auto reads = counter_reads(std::make_index_sequence<last_counter - first_counter + 1>());

constexpr auto handlers = [] {
    std::array<ChipHandler, reads.size() + 2> all{};
    std::ranges::copy(reads, all.begin() + 2);
    all[0] = handler<clear_counters>(2945);
    all[1] = handler<clear_all_counters>(2946);
    return all;
}();

} // namespace

void grow_counters(ChipPort& port, double seconds) {
    const std::uint32_t bytes = port.traffic.packet_bytes;
    const Packets in = next_packets(port.rx, port.traffic.rx_packets, seconds);
    const Packets out = next_packets(port.tx, port.traffic.tx_packets, seconds);
    const std::pair<std::uint32_t, std::uint64_t> growth[] = {
        {rx_octets, in.all * bytes},
        {rx_unicast, in.unicast()},
        {rx_not_unicast, in.not_unicast()},
        {rx_multicast, in.multicast},
        {rx_broadcast, in.broadcast},
        {tx_octets, out.all * bytes},
        {tx_unicast, out.unicast()},
        {tx_not_unicast, out.not_unicast()},
        {tx_multicast, out.multicast},
        {tx_broadcast, out.broadcast},
        {queued_unicast, out.unicast()},
        {queued_multicast, out.multicast},
        {queued_broadcast, out.broadcast},
        {all_octets, in.all * bytes},
        {all_packets, in.all},
        {all_broadcast, in.broadcast},
        {all_multicast, in.multicast},
        {size_counter(bytes), in.all + out.all},
    };
    for (auto [counter, packets] : growth)
        port.counters[counter] += packets;
}

std::span<const ChipHandler> counter_handlers() { return handlers; }

} // namespace sim
