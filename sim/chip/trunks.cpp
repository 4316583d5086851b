// Aggregation groups of the chip, and the candidates that the protocol (LACP) chooses from.
#include <algorithm>

#include "driver/lacp.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

constexpr std::uint32_t most_active = 8; // members of a group that carry traffic

// Part of a port in aggregation.
enum Role : std::uint32_t {
    role_none = 0,
    role_lacp_member = 1,
    role_static_member = 2,
    role_lacp_group = 4,
    role_static_group = 5,
};

int set_trunk(ChipState& chip, ChipTrunkMode mode, OrderedEntry<ChipPortSet>& record) {
    if (record.words.word[0] >= chip.trunks.size())
        return code_bad_value;
    chip.trunks[record.words.word[0]] = {mode, record.entry};
    return code_ok;
}

int set_static_trunk(ChipState& chip, OrderedEntry<ChipPortSet>& record) {
    return set_trunk(chip, ChipTrunkMode::fixed, record);
}

int set_lacp_trunk(ChipState& chip, OrderedEntry<ChipPortSet>& record) {
    return set_trunk(chip, ChipTrunkMode::lacp, record);
}

int del_trunk(ChipState& chip, ChipWords& words) {
    if (words.word[0] >= chip.trunks.size())
        return code_bad_value;
    chip.trunks[words.word[0]] = {};
    return code_ok;
}

int get_trunk_mode(ChipState& chip, ChipWords& words) {
    if (words.word[0] >= chip.trunks.size())
        return code_bad_value;
    words.word[1] = static_cast<std::uint32_t>(chip.trunks[words.word[0]].mode);
    return code_ok;
}

int get_trunk_active(ChipState& chip, OrderedEntry<ChipPortSet>& record) {
    if (record.words.word[0] >= chip.trunks.size())
        return code_bad_value;
    const ChipPortSet links = links_of(chip);
    const ChipPortSet& members = chip.trunks[record.words.word[0]].members;
    for (std::size_t word = 0; word < members.size(); ++word)
        record.entry[word] = members[word] & links[word];
    return code_ok;
}

int get_trunk_role(ChipState& chip, ChipWords& words) {
    const std::uint32_t port = words.word[0];
    if (!port_at(chip, port))
        return code_no_port;
    words.word[1] = role_none;
    for (std::size_t group = 0; group < chip.trunks.size(); ++group) {
        const auto& [mode, members] = chip.trunks[group];
        const bool lacp = mode == ChipTrunkMode::lacp;
        if (mode == ChipTrunkMode::none)
            continue;
        if (port + chip.trunks.size() == chip.ports.size() + group)
            words.word[1] = lacp ? role_lacp_group : role_static_group;
        else if (holds(members, port))
            words.word[1] = lacp ? role_lacp_member : role_static_member;
    }
    return code_ok;
}

int get_trunk_of_port(ChipState& chip, ChipWords& words) {
    const std::uint32_t port = words.word[0];
    if (!port_at(chip, port))
        return code_no_port;
    auto group = std::ranges::find_if(
        chip.trunks, [&](const ChipTrunk& trunk) { return holds(trunk.members, port); });
    if (group == chip.trunks.end())
        return code_not_found;
    words.word[1] = static_cast<std::uint32_t>(group - chip.trunks.begin());
    return code_ok;
}

// --- Candidates.

int set_candidates(ChipState& chip, MeantEntry<ChipPortSet>& record) {
    if (record.words.index >= chip.candidates.size())
        return code_bad_value;
    chip.candidates[record.words.index] = record.entry;
    return code_ok;
}

int del_candidates(ChipState& chip, RequestWords& words) {
    if (words.index >= chip.candidates.size())
        return code_bad_value;
    chip.candidates[words.index] = {};
    return code_ok;
}

// The candidates that are one too many wait for another's end.
int get_lacp_state(ChipState& chip, MeantEntry<LacpState>& record) {
    if (record.words.index >= chip.candidates.size())
        return code_bad_value;
    record.entry = {};
    std::uint32_t active = 0;
    for (std::size_t port = 0; port < chip.ports.size(); ++port)
        if (holds(chip.candidates[record.words.index], port) && active++ >= most_active)
            add_to(record.entry.spare_members.words, port);
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<set_candidates>(2179),    handler<del_candidates>(2180),
    handler<get_lacp_state>(2243),    handler<set_static_trunk>(4353),
    handler<del_trunk>(4354),         handler<set_lacp_trunk>(4355),
    handler<del_trunk>(4356),         handler<get_trunk_mode>(4417),
    handler<get_trunk_active>(4418),  handler<get_trunk_role>(4419),
    handler<get_trunk_of_port>(4421),
};

} // namespace

std::span<const ChipHandler> trunk_handlers() { return handlers; }

} // namespace sim
