// The commands of the chip that do something, a table a part of the chip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "driver/request.h"
#include "sim/chip/chip.h"
#include "sim/instruments/codes.h"

namespace sim {

// Carries out one command on its record. A record that a failing one changed is not handed back.
struct ChipHandler {
    std::uint32_t number;
    int (*handle)(ChipState& chip, void* record);
};

std::span<const ChipHandler> port_handlers();
std::span<const ChipHandler> counter_handlers();
std::span<const ChipHandler> l4_range_handlers();
std::span<const ChipHandler> access_list_handlers();
std::span<const ChipHandler> mirror_handlers();
std::span<const ChipHandler> trunk_handlers();
std::span<const ChipHandler> address_handlers();
std::span<const ChipHandler> multicast_handlers();
std::span<const ChipHandler> vlan_handlers();
std::span<const ChipHandler> registration_handlers();
std::span<const ChipHandler> management_list_handlers();
std::span<const ChipHandler> binding_handlers();

// Words by meaning and words in argument order, with an entry behind them.
template <class Entry> struct MeantEntry {
    RequestWords words;
    Entry entry;
};
template <class Entry> struct OrderedEntry {
    ChipWords words;
    Entry entry;
};

// A text as an entry: NUL-terminated, in whole words.
template <std::size_t size> struct ChipText { char text[(size + 3) / 4 * 4]; };

namespace detail {

// A record on a caller's stack need not be aligned for its type.
template <auto operation> struct Bound;
template <class Record, int (*operation)(ChipState&, Record&)> struct Bound<operation> {
    static int handle(ChipState& chip, void* place) {
        Record record;
        std::memcpy(&record, place, sizeof record);
        const int code = operation(chip, record);
        if (code == code_ok)
            std::memcpy(place, &record, sizeof record);
        return code;
    }
};

} // namespace detail

template <auto operation> constexpr ChipHandler handler(std::uint32_t number) {
    return {number, detail::Bound<operation>::handle};
}

// Returns null for a number beyond the ports.
inline ChipPort* port_at(ChipState& chip, std::uint32_t port) {
    return port < chip.ports.size() ? &chip.ports[port] : nullptr;
}

inline bool holds(std::span<const std::uint32_t> set, std::size_t bit) {
    return bit / 32 < set.size() && (set[bit / 32] >> (bit % 32) & 1) != 0;
}

inline void add_to(std::span<std::uint32_t> set, std::size_t bit) {
    if (bit / 32 < set.size())
        set[bit / 32] |= 1u << (bit % 32);
}

ChipPortSet links_of(const ChipState& chip);

// Returns null for a place without a range.
ChipL4Range* l4_range_at(ChipState& chip, std::size_t place);

// The counters of a port with link, after so many seconds of its traffic.
void grow_counters(ChipPort& port, double seconds);

} // namespace sim
