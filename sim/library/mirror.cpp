// Platform library: port mirroring.
#include "sim/library/mirror.h"

#include <algorithm>
#include <iterator>

#include "driver/mirror.h"
#include "platform/trunk.h"
#include "sim/library/call.h"

namespace sim {

namespace {

bool is_flag(int value) { return value == 0 || value == 1; }

bool has(const PortBitmap& ports, int port) { return ports.words[port / 32] >> (port % 32) & 1; }

void remove(PortBitmap& ports, int port) { ports.words[port / 32] &= ~(1u << port % 32); }

// Ports below the aggregation groups.
bool is_physical(const Switch& s, int port) {
    return port >= 0 && port < s.logical_ports() - TRUNK_GROUPS;
}

bool all_physical(const Switch& s, const PortBitmap& ports) {
    for (int port = 0; port < 32 * PORT_BITMAP_WORDS; ++port)
        if (has(ports, port) && !is_physical(s, port))
            return false;
    return true;
}

// Puts into the chip what a group shall be, and keeps it when the chip took it.
int program(MirrorSession& session, int group, const MirrorSession& wanted) {
    auto number = static_cast<std::uint32_t>(group);
    MirrorGroup entry{
        static_cast<std::uint32_t>(wanted.target), wanted.ingress, wanted.rx, wanted.tx};
    int code = wanted.on ? rsd_mirror_group_set(number, &entry) : rsd_mirror_group_del(number);
    if (code == code_ok)
        session = wanted;
    return code;
}

template <class Body, class... Arguments>
int group_call(const char* name, int group, Body body, const Arguments&... arguments) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (group < 0 || group >= MIRROR_GROUPS)
                return code_bad_value;
            return body(s, s.mirrors.groups[static_cast<std::size_t>(group)]);
        },
        group, arguments...);
}

bool may_be_target(const Switch& s, const MirrorSession& of, int port) {
    return sys_trunk_portRole_ret(port) == TRUNK_ROLE_NONE &&
           std::ranges::none_of(s.mirrors.groups, [&](const MirrorSession& other) {
               return &other != &of && other.on && other.target == port;
           });
}

} // namespace

void MirrorSession::fields(Fields& f, int last_port) {
    f.boolean("on", on);
    f.integer("target", target, 0, last_port);
    f.integer("ingress", ingress, 0, 1);
    f.bits("rx", rx.words, PORT_BITMAP_WORDS);
    f.bits("tx", tx.words, PORT_BITMAP_WORDS);
}

bool Mirrors::is_target(int port) const {
    return std::ranges::any_of(
        groups, [&](const MirrorSession& session) { return session.on && session.target == port; });
}

void Mirrors::config(Fields& f) {
    f.list(
        "groups",
        [&](int count) {
            if (count > static_cast<int>(groups.size()))
                f.refuse("groups has more than " + std::to_string(groups.size()) + " elements");
            return groups.size();
        },
        [&](Fields& element, std::size_t i) {
            if (i < groups.size())
                groups[i].fields(element, chip_.ports() - TRUNK_GROUPS - 1);
        });
    chip_.change([&](ChipState& state) {
        for (std::size_t i = 0; i < groups.size(); ++i) {
            const MirrorSession& session = groups[i];
            state.mirrors[i].reset();
            if (!session.on)
                continue;
            ChipMirror mirror{static_cast<std::uint32_t>(session.target), session.ingress, {}, {}};
            std::ranges::copy(session.rx.words, mirror.rx.begin());
            std::ranges::copy(session.tx.words, mirror.tx.begin());
            state.mirrors[i] = mirror;
        }
    });
}

} // namespace sim

using namespace sim;

int sal_mirror_group_targetPort_get(int group, int* target, uint32_t* state) {
    return group_call(
        "sal_mirror_group_targetPort_get", group, [&](Switch&, const MirrorSession& session) {
            *target = session.target;
            *state = session.on;
            return code_ok;
        });
}

int sal_mirror_group_targetPort_set(int group, int target, int state) {
    return group_call(
        "sal_mirror_group_targetPort_set", group,
        [&](Switch& s, MirrorSession& session) -> int {
            if (!is_physical(s, target))
                return code_no_port;
            if (!is_flag(state))
                return code_bad_value;
            if (state && !may_be_target(s, session, target))
                return code_busy;
            MirrorSession wanted = session;
            wanted.on = state != 0;
            wanted.target = state ? target : 0;
            remove(wanted.rx, target);
            remove(wanted.tx, target);
            return program(session, group, wanted);
        },
        target, state);
}

int sal_mirror_group_state_get(int group, uint32_t* state) {
    return group_call(
        "sal_mirror_group_state_get", group, [&](Switch&, const MirrorSession& session) {
            *state = session.on;
            return code_ok;
        });
}

int sal_mirror_group_igrState_get(int group, uint32_t* ingress) {
    return group_call(
        "sal_mirror_group_igrState_get", group, [&](Switch&, const MirrorSession& session) {
            *ingress = session.ingress;
            return code_ok;
        });
}

int sal_mirror_group_igrState_set(int group, int ingress) {
    return group_call(
        "sal_mirror_group_igrState_set", group,
        [&](Switch&, MirrorSession& session) -> int {
            if (!is_flag(ingress))
                return code_bad_value;
            if (!session.on)
                return code_not_found;
            MirrorSession wanted = session;
            wanted.ingress = static_cast<uint32_t>(ingress);
            return program(session, group, wanted);
        },
        ingress);
}

int sal_mirror_group_sourcePort_get(int group, PortBitmap* rx, PortBitmap* tx) {
    return group_call(
        "sal_mirror_group_sourcePort_get", group, [&](Switch&, const MirrorSession& session) {
            *rx = session.rx;
            *tx = session.tx;
            return code_ok;
        });
}

int sal_mirror_group_sourcePort_set(int group, PortBitmap rx, PortBitmap tx) {
    return group_call(
        "sal_mirror_group_sourcePort_set", group,
        [&](Switch& s, MirrorSession& session) -> int {
            if (!all_physical(s, rx) || !all_physical(s, tx))
                return code_no_port;
            if (session.on && (has(rx, session.target) || has(tx, session.target)))
                return code_busy;
            MirrorSession wanted = session;
            wanted.rx = rx;
            wanted.tx = tx;
            return program(session, group, wanted);
        },
        rx, tx);
}

int sal_mirror_group_del(int group) {
    return group_call("sal_mirror_group_del", group, [&](Switch&, MirrorSession& session) {
        MirrorSession wanted = session;
        wanted.on = false;
        wanted.target = 0;
        wanted.ingress = 0;
        return program(session, group, wanted);
    });
}
