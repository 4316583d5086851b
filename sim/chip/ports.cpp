// Ports of the chip: enabled or not, their links and frame sizes, the test of a copper cable.
#include "driver/cablediag.h"
#include "sim/chip/handlers.h"

namespace sim {

ChipPortSet links_of(const ChipState& chip) {
    ChipPortSet links{};
    for (std::size_t port = 0; port < chip.ports.size(); ++port)
        if (chip.ports[port].link())
            add_to(links, port);
    return links;
}

namespace {

// --- Ports.

int set_port_enable(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    if (words.word[1] > 1)
        return code_bad_value;
    port->enabled = words.word[1] == 1;
    return code_ok;
}

int get_port_enable(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->enabled;
    return code_ok;
}

int get_port_link(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->link();
    return code_ok;
}

int get_port_links(ChipState& chip, OrderedEntry<ChipPortSet>& record) {
    record.entry = links_of(chip);
    return code_ok;
}

int get_port_speed(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->speed;
    words.word[2] = port->duplex;
    return code_ok;
}

// --- Frame sizes.

bool is_frame_size(std::uint32_t bytes) { return bytes >= 64 && bytes <= 12288; }

int set_max_frame(ChipState& chip, ChipWords& words) {
    if (!is_frame_size(words.word[0]))
        return code_bad_value;
    chip.max_frame_bytes = words.word[0];
    return code_ok;
}

int get_max_frame(ChipState& chip, ChipWords& words) {
    words.word[0] = chip.max_frame_bytes;
    return code_ok;
}

int set_port_max_frame(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    if (!is_frame_size(words.word[1]))
        return code_bad_value;
    port->max_frame_bytes = words.word[1];
    return code_ok;
}

int get_port_max_frame(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->max_frame_bytes ? port->max_frame_bytes : chip.max_frame_bytes;
    return code_ok;
}

// --- Cable tests.

int test_cable(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    if (!port->copper)
        return code_bad_value;
    port->tested = port->cable;
    return code_ok;
}

int get_cable_result(ChipState& chip, CableRecord& record) {
    ChipPort* port = port_at(chip, record.result.port);
    if (!port)
        return code_no_port;
    if (!port->tested)
        return code_not_found;
    for (std::size_t pair = 0; pair < port->tested->size(); ++pair) {
        record.result.pair_state[pair] = (*port->tested)[pair].state;
        record.result.length_m[pair] = (*port->tested)[pair].length_m;
    }
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<test_cable>(385),          handler<get_cable_result>(449),
    handler<set_port_enable>(3457),    handler<get_port_enable>(3521),
    handler<get_port_link>(3522),      handler<get_port_links>(3523),
    handler<get_port_speed>(3528),     handler<set_max_frame>(4097),
    handler<set_port_max_frame>(4098), handler<get_max_frame>(4161),
    handler<get_port_max_frame>(4162),
};

} // namespace

std::span<const ChipHandler> port_handlers() { return handlers; }

} // namespace sim
