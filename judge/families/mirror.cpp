// Port mirroring.
#include "platform/mirror.h"

#include "judge/changes.h"
#include "judge/family.h"
#include "judge/ports.h"
#include "platform/trunk.h"

namespace judge {

namespace {

const Parameter group = within("group", 0, MIRROR_GROUPS - 1);

int port_end() { return port_count() - TRUNK_GROUPS; }

std::string fault_of(const PortBitmap& ports) {
    return all_below(ports, port_end()) ? "" : "a source is no port below the groups";
}

Operations reads() {
    const Parameter sources = gives_record<PortBitmap>("ports", fault_of);
    return {
        {NAMED(sal_mirror_group_targetPort_get),
         {group, gives(physical_port), gives_flag("state")}},
        {NAMED(sal_mirror_group_state_get), {group, gives_flag("state")}},
        {NAMED(sal_mirror_group_igrState_get), {group, gives_flag("ingress")}},
        {NAMED(sal_mirror_group_sourcePort_get), {group, sources, sources}},
    };
}

struct Session {
    int target = 0;
    std::uint32_t state = 0;
    std::uint32_t ingress = 0;
    PortBitmap rx = {};
    PortBitmap tx = {};
};

bool read(int number, Session& session) {
    std::uint32_t state = 0;
    bool all = ASK(sal_mirror_group_igrState_get, number, &session.ingress) == 0 &&
               ASK(sal_mirror_group_sourcePort_get, number, &session.rx, &session.tx) == 0 &&
               ASK(sal_mirror_group_state_get, number, &state) == 0 &&
               ASK(sal_mirror_group_targetPort_get, number, &session.target, &session.state) == 0;
    if (all)
        bench->holds(
            state == session.state, reason::disagrees, "whether the group is on",
            "sal_mirror_group_state_get gives " + std::to_string(state));
    return all;
}

void agreement() {
    PortBitmap targets = {};
    for (int number = 0; number < MIRROR_GROUPS; ++number) {
        Session session;
        if (!read(number, session))
            continue;
        bench->holds(
            session.state || session.target == 0, reason::disagrees,
            "the target of a group that is off is 0", "target " + std::to_string(session.target));
        if (!session.state || session.target < 0 || session.target >= port_end())
            continue;
        bench->holds(
            !has(session.rx, session.target) && !has(session.tx, session.target), reason::disagrees,
            "the target is no source", "it is");
        bench->holds(
            !has(targets, session.target), reason::disagrees, "a port is the target of one group",
            "port " + std::to_string(session.target) + " is that of two");
        add(targets, session.target);
    }
}

// --- Changes: on groups that are off.

std::vector<int> groups_that_are_off() {
    std::vector<int> groups;
    for (int number = 0; number < MIRROR_GROUPS; ++number) {
        std::uint32_t state = 1;
        if (sal_mirror_group_state_get(number, &state) == 0 && !state)
            groups.push_back(number);
    }
    return groups;
}

void expect(int number, const Session& wanted, const std::string call) {
    Session found;
    bench->count_case();
    bool same = read(number, found) && found.state == wanted.state &&
                found.target == wanted.target && found.ingress == wanted.ingress &&
                show(found.rx) == show(wanted.rx) && show(found.tx) == show(wanted.tx);
    if (!same)
        bench->convict(
            reason::not_stored, call,
            "target " + std::to_string(wanted.target) + ", state " + std::to_string(wanted.state) +
                ", ingress " + std::to_string(wanted.ingress) + ", rx " + show(wanted.rx) +
                ", tx " + show(wanted.tx),
            "target " + std::to_string(found.target) + ", state " + std::to_string(found.state) +
                ", ingress " + std::to_string(found.ingress) + ", rx " + show(found.rx) + ", tx " +
                show(found.tx));
    agreement();
}

void judge_refusals(int number, int target) {
    unchanged(reads(), [&] {
        for (int wrong : {-1, port_end(), port_count(), INT32_MAX})
            bench->refuses(
                ASK(sal_mirror_group_targetPort_set, number, wrong, 1), physical_port.says);
        for (int wrong : {-1, 2})
            bench->refuses(
                ASK(sal_mirror_group_targetPort_set, number, target, wrong), "on (1) or off (0)");
        for (int wrong : {-1, MIRROR_GROUPS + 0})
            bench->refuses(ASK(sal_mirror_group_targetPort_set, wrong, target, 1), group.says);
        for (int wrong : {-1, 2})
            bench->refuses(ASK(sal_mirror_group_igrState_set, number, wrong), "0 or 1");
        PortBitmap none = {};
        PortBitmap groups = ports_of(port_end());
        bench->refuses(
            ASK(sal_mirror_group_sourcePort_set, number, groups, none),
            "refused when a source is no port below the aggregation groups");
    });
}

void judge_session(int number, int other, int target, int source) {
    Session wanted;
    read(number, wanted);
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_mirror_group_igrState_set, number, 1),
            "_set is refused while the group is off");
    });
    bench->works(ASK(sal_mirror_group_targetPort_set, number, target, 1), "a target, and on");
    wanted.target = target;
    wanted.state = 1;
    for (PortBitmap* set : {&wanted.rx, &wanted.tx})
        set->words[target / 32] &= ~(1u << target % 32);
    expect(number, wanted, Bench::last());
    for (int ingress : {1, 0}) {
        bench->works(ASK(sal_mirror_group_igrState_set, number, ingress), "0 or 1");
        wanted.ingress = static_cast<std::uint32_t>(ingress);
        expect(number, wanted, Bench::last());
    }
    wanted.rx = ports_of(source);
    wanted.tx = {};
    bench->works(
        ASK(sal_mirror_group_sourcePort_set, number, wanted.rx, wanted.tx), "the source ports");
    expect(number, wanted, Bench::last());
    judge_refusals(number, target);
    PortBitmap none = {};
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_mirror_group_sourcePort_set, number, ports_of(target), none),
            "refused when one of them is the target");
        if (other >= 0)
            bench->refuses(
                ASK(sal_mirror_group_targetPort_set, other, target, 1),
                "refused for the target of another group");
    });
    bench->works(ASK(sal_mirror_group_del, number), "takes a group out");
    wanted.state = wanted.ingress = 0;
    wanted.target = 0;
    expect(number, wanted, Bench::last());
}

void changes() {
    std::vector<int> groups = groups_that_are_off();
    std::vector<int> ports;
    for (int p = port_end() - 1; p >= 0; --p)
        if (sys_trunk_portRole_ret(p) == TRUNK_ROLE_NONE)
            ports.push_back(p);
    if (groups.empty() || ports.size() < 2)
        return bench->remark("no mirror group is off: mirroring is not changed");
    Session before;
    read(groups[0], before);
    back_as_before(reads(), [&] {
        Undo sources(
            "sal_mirror_group_sourcePort_set",
            {std::to_string(groups[0]), words_text(before.rx), words_text(before.tx)});
        Undo off("sal_mirror_group_del", {std::to_string(groups[0])});
        judge_session(groups[0], groups.size() > 1 ? groups[1] : -1, ports[0], ports[1]);
    });
}

} // namespace

const Family mirror_family = {"mirror", reads, agreement, nullptr, changes};

} // namespace judge
