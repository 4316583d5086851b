// Platform library: link aggregation, whose groups are the chip's.
#include "sim/library/trunks.h"

#include <algorithm>
#include <bit>

#include "driver/lacp.h"
#include "driver/trunk.h"
#include "platform/trunk.h"
#include "sim/library/call.h"

namespace sim {

namespace {

constexpr int bitmap_ports = 32 * PORT_BITMAP_WORDS;

void fields(Fields& f, ChipTrunk& group, PortBitmap& active) {
    bool lacp = group.mode == ChipTrunkMode::lacp;
    f.boolean("lacp", lacp);
    f.bits("members", group.members.data(), group.members.size());
    f.bits("active", active.words, PORT_BITMAP_WORDS);
    bool empty = group.members == ChipPortSet{};
    group.mode = empty ? ChipTrunkMode::none : lacp ? ChipTrunkMode::lacp : ChipTrunkMode::fixed;
}

bool has(const PortBitmap& ports, int port) { return ports.words[port / 32] >> (port % 32) & 1; }

int size(const PortBitmap& ports) {
    int count = 0;
    for (std::uint32_t word : ports.words)
        count += std::popcount(word);
    return count;
}

template <class Body, class... Arguments>
int group_call(const char* name, int group, Body body, const Arguments&... arguments) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (group < 0 || group >= TRUNK_GROUPS)
                return code_bad_value;
            return body(s, s.chip.state().trunks[static_cast<std::size_t>(group)]);
        },
        group, arguments...);
}

// Whether a port may be in this group: 0, or the reason why not.
int judge_member(const Switch& s, int group, int port) {
    if (port >= s.logical_ports() - TRUNK_GROUPS)
        return code_no_port;
    uint32_t present = 0;
    bool elsewhere =
        rsd_trunk_memberPortTrunkId_get(static_cast<uint32_t>(port), &present) == code_ok &&
        present != static_cast<uint32_t>(group);
    if (elsewhere || s.ports.port[static_cast<std::size_t>(port)].security ||
        s.mirrors.is_target(port))
        return code_busy;
    return code_ok;
}

int judge_members(const Switch& s, int group, const PortBitmap& members, int most) {
    for (int port = 0; port < bitmap_ports; ++port)
        if (int code = has(members, port) ? judge_member(s, group, port) : 0)
            return code;
    return size(members) > most ? code_table_full : code_ok;
}

// One kind of group, with what the driver does for it.
struct Kind {
    ChipTrunkMode mode;
    int most;
    int (*set)(uint32_t group, const PortBitmap* members);
    int (*del)(uint32_t group);
};

constexpr Kind fixed_kind = {
    ChipTrunkMode::fixed, TRUNK_STATIC_MEMBERS, rsd_trunk_staticGroup_set,
    rsd_trunk_staticGroup_del};
constexpr Kind lacp_kind = {
    ChipTrunkMode::lacp, TRUNK_LACP_MEMBERS, rsd_trunk_lacpGroup_set, rsd_trunk_lacpGroup_del};

int member_set(const char* name, const Kind& kind, int group, const PortBitmap& members) {
    return group_call(
        name, group,
        [&](Switch& s, const ChipTrunk& trunk) -> int {
            auto number = static_cast<uint32_t>(group);
            if (trunk.mode != ChipTrunkMode::none && trunk.mode != kind.mode)
                return code_exists;
            if (int code = judge_members(s, group, members, kind.most))
                return code;
            s.trunks.active[number] = {};
            return size(members) ? kind.set(number, &members) : kind.del(number);
        },
        members);
}

} // namespace

void Trunks::config(Fields& f) {
    chip_.change([&](ChipState& state) {
        f.list(
            "groups", [&](int) { return state.trunks.size(); },
            [&](Fields& element, std::size_t i) {
                if (i < state.trunks.size())
                    fields(element, state.trunks[i], active[i]);
            });
    });
}

} // namespace sim

using namespace sim;

int sys_trunk_portRole_ret(int port) {
    return value(
        "sys_trunk_portRole_ret",
        [&](Switch&) {
            uint32_t role = TRUNK_ROLE_NONE;
            rsd_trunk_portRole_get(static_cast<uint32_t>(port), &role);
            return static_cast<int>(role);
        },
        port);
}

int sal_trunk_member_get(int group, PortBitmap* members) {
    return group_call("sal_trunk_member_get", group, [&](Switch&, const ChipTrunk& trunk) {
        std::ranges::copy(trunk.members, members->words);
        return code_ok;
    });
}

int sal_trunk_staticMember_set(int group, const PortBitmap* members) {
    return member_set("sal_trunk_staticMember_set", fixed_kind, group, *members);
}

int sal_lacp_member_set(int group, const PortBitmap* members) {
    return member_set("sal_lacp_member_set", lacp_kind, group, *members);
}

int sal_lacp_activeMode_set(int group, const PortBitmap* active) {
    return group_call(
        "sal_lacp_activeMode_set", group,
        [&](Switch& s, const ChipTrunk& trunk) -> int {
            for (std::size_t word = 0; word < trunk.members.size(); ++word)
                if (active->words[word] & ~trunk.members[word])
                    return code_not_found;
            for (int port = 0; port < s.logical_ports(); ++port)
                if (trunk.members[static_cast<std::size_t>(port) / 32] >> (port % 32) & 1)
                    if (int code = lacp_portActivity_set(
                            static_cast<uint32_t>(port), has(*active, port) ? 1 : 0))
                        return code;
            s.trunks.active[static_cast<std::size_t>(group)] = *active;
            return code_ok;
        },
        *active);
}

int sal_trunk_group_del(int group) {
    return group_call("sal_trunk_group_del", group, [&](Switch& s, const ChipTrunk& trunk) {
        auto number = static_cast<uint32_t>(group);
        s.trunks.active[number] = {};
        return trunk.mode == ChipTrunkMode::lacp ? rsd_trunk_lacpGroup_del(number)
                                                 : rsd_trunk_staticGroup_del(number);
    });
}
