// MAC addresses of the chip, and what port security counts of them.
#include <algorithm>
#include <array>

#include "driver/l2.h"
#include "driver/port_security.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

using Address = OrderedEntry<L2MacEntry>;
using Addresses = ChipAddresses;

int generate(ChipState& chip, ChipWords& words) {
    Addresses& all = chip.addresses;
    all.snapshot = all.plain.entries();
    all.snapshot.insert(
        all.snapshot.end(), all.secure.entries().begin(), all.secure.entries().end());
    words.word[0] = static_cast<std::uint32_t>(all.snapshot.size());
    return code_ok;
}

int get_size(ChipState& chip, ChipWords& words) {
    words.word[0] =
        static_cast<std::uint32_t>(chip.addresses.plain.size() + chip.addresses.secure.size());
    return code_ok;
}

int get_entry(ChipState& chip, Address& record) {
    const auto& snapshot = chip.addresses.snapshot;
    const std::uint32_t place = record.words.word[0];
    return hand_out(place < snapshot.size() ? &snapshot[place] : nullptr, record.entry);
}

int get_batch(ChipState& chip, OrderedEntry<L2MacBatch>& record) {
    const auto& snapshot = chip.addresses.snapshot;
    const std::size_t first = record.words.word[0];
    if (first >= snapshot.size())
        return code_not_found;
    record.entry = {};
    record.entry.count =
        static_cast<std::uint32_t>(std::min<std::size_t>(snapshot.size() - first, L2_BATCH_SIZE));
    std::copy_n(&snapshot[first], record.entry.count, record.entry.entries);
    return code_ok;
}

template <auto table> int add(ChipState& chip, Address& record) {
    return (chip.addresses.*table).put(record.entry);
}

template <auto table> int remove(ChipState& chip, Address& record) {
    return (chip.addresses.*table).remove(record.entry);
}

template <auto table> int search(ChipState& chip, Address& record) {
    return hand_out((chip.addresses.*table).find(record.entry), record.entry);
}

int get_secure(ChipState& chip, Address& record) {
    return hand_out(chip.addresses.secure.at(record.words.word[0]), record.entry);
}

// Port security keeps its addresses.
int clear(ChipState& chip, ChipWords&) {
    chip.addresses.plain.clear();
    return code_ok;
}

int clear_port(ChipState& chip, ChipWords& words) {
    if (!port_at(chip, words.word[0]))
        return code_no_port;
    chip.addresses.plain.remove_if(
        [&](const L2MacEntry& entry) { return holds(entry.ports.words, words.word[0]); });
    return code_ok;
}

template <std::uint32_t number> int get_number(ChipState&, ChipWords& words) {
    words.word[0] = number;
    return code_ok;
}

int count_secure(ChipState& chip, ChipWords& words) {
    words.word[1] = chip.addresses.secure.count_if(
        [&](const L2MacEntry& entry) { return holds(entry.ports.words, words.word[0]); });
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<clear>(2049),
    handler<clear_port>(2050),
    handler<add<&Addresses::plain>>(2051),
    handler<remove<&Addresses::plain>>(2052),
    handler<add<&Addresses::secure>>(2053),
    handler<remove<&Addresses::secure>>(2054),
    handler<generate>(2113),
    handler<get_size>(2114),
    handler<search<&Addresses::plain>>(2115),
    handler<get_entry>(2116),
    handler<get_batch>(2117),
    handler<get_secure>(2118),
    handler<search<&Addresses::secure>>(2119),
    handler<get_number<chip_addresses>>(2123),
    handler<get_number<chip_user_addresses>>(2124),
    handler<get_number<0>>(2125), // learning is on at every port
    handler<count_secure>(3654),
};

} // namespace

std::span<const ChipHandler> address_handlers() { return handlers; }

} // namespace sim
