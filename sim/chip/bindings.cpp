// Bindings of addresses to ports, which IP source guard lets in.
#include "sim/chip/admission.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

constexpr std::uint32_t learned = 1; // from DHCP

std::uint32_t bindings_of(const ChipState& chip, std::uint32_t port) {
    return chip.bindings.count_if([&](const IsgBinding& entry) { return entry.port == port; });
}

bool is_port_full(const ChipState& chip, std::uint32_t port) {
    auto most = chip.most_bindings.find(port);
    return most != chip.most_bindings.end() && most->second != 0 &&
           bindings_of(chip, port) >= most->second;
}

int set(ChipState& chip, MeantEntry<IsgBinding>& record) {
    if (!port_at(chip, record.entry.port))
        return code_no_port;
    if (!chip.bindings.find(record.entry) && is_port_full(chip, record.entry.port))
        return code_table_full;
    return chip.bindings.put(record.entry);
}

int del(ChipState& chip, MeantEntry<IsgBinding>& record) {
    return chip.bindings.remove(record.entry);
}

int del_learned(ChipState& chip, MeantEntry<IsgBinding>& record) {
    const IsgBinding* binding = chip.bindings.find(record.entry);
    return binding && binding->kind == learned ? chip.bindings.remove(record.entry)
                                               : int{code_not_found};
}

int get_at_place(ChipState& chip, MeantEntry<IsgBinding>& record) {
    return hand_out(chip.bindings.at(record.words.index), record.entry);
}

int set_most(ChipState& chip, RequestWords& words) {
    chip.most_bindings[words.port] = words.value;
    return code_ok;
}

int count_of_port(ChipState& chip, RequestWords& words) {
    words.value = bindings_of(chip, words.port);
    return code_ok;
}

int get_room(ChipState& chip, RequestWords& words) {
    words.value = static_cast<std::uint32_t>(chip.bindings.room());
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<set>(1922),      handler<del>(1923),          handler<del_learned>(1924),
    handler<set_most>(1925), handler<get_at_place>(1985), handler<count_of_port>(1986),
    handler<get_room>(1987),
};

} // namespace

std::span<const ChipHandler> binding_handlers() { return handlers; }

} // namespace sim
