// Link aggregation.
#include "platform/trunk.h"

#include "judge/changes.h"
#include "judge/family.h"
#include "judge/ports.h"
#include "platform/mirror.h"
#include "platform/port.h"

namespace judge {

namespace {

const Parameter group = within("group", 0, TRUNK_GROUPS - 1);

int first_group() { return port_count() - TRUNK_GROUPS; }

std::string fault_of(const PortBitmap& members) {
    if (!all_below(members, first_group()))
        return "a member is no port below the groups";
    return size(members) > TRUNK_LACP_MEMBERS ? std::to_string(size(members)) + " members" : "";
}

Operations reads() {
    const Numbers roles = {
        TRUNK_ROLE_NONE, TRUNK_ROLE_LACP_MEMBER, TRUNK_ROLE_STATIC_MEMBER, TRUNK_ROLE_LACP_GROUP,
        TRUNK_ROLE_STATIC_GROUP};
    return {
        {NAMED(sys_trunk_portRole_ret), {port}, one_of("role", roles)},
        {NAMED(sal_trunk_member_get), {group, gives_record<PortBitmap>("members", fault_of)}},
    };
}

// --- What must agree: a group's role, its number of members, and the roles of its members.

struct Kind {
    const char* name;
    int group_role;
    int member_role;
    int most;
    const char* set_name;
    int (*set)(int group, const PortBitmap* members);
};

const Kind kinds[] = {
    {"static", TRUNK_ROLE_STATIC_GROUP, TRUNK_ROLE_STATIC_MEMBER, TRUNK_STATIC_MEMBERS,
     NAMED(sal_trunk_staticMember_set)},
    {"LACP", TRUNK_ROLE_LACP_GROUP, TRUNK_ROLE_LACP_MEMBER, TRUNK_LACP_MEMBERS,
     NAMED(sal_lacp_member_set)},
};

void judge_members(int number, const PortBitmap& members, const Kind& kind) {
    bench->holds(
        size(members) > 0 && size(members) <= kind.most, reason::disagrees,
        std::string("members of a group of the kind ") + kind.name,
        std::to_string(size(members)) + " members of group " + std::to_string(number));
    for (int p = 0; p < first_group(); ++p)
        if (has(members, p))
            bench->holds(
                ASK(sys_trunk_portRole_ret, p) == kind.member_role, reason::disagrees,
                "the role of a member of a group of its kind",
                "port " + std::to_string(p) + " is in group " + std::to_string(number));
}

PortBitmap judge_group(int number) {
    PortBitmap members = {};
    if (ASK(sal_trunk_member_get, number, &members) != 0)
        return {};
    int role = ASK(sys_trunk_portRole_ret, first_group() + number);
    for (const Kind& kind : kinds)
        if (role == kind.group_role)
            judge_members(number, members, kind);
    bool grouped = role == TRUNK_ROLE_LACP_GROUP || role == TRUNK_ROLE_STATIC_GROUP;
    bench->holds(
        grouped == (size(members) > 0), reason::disagrees,
        "TRUNK_ROLE_NONE for a group without members, and the role of its kind with them",
        "role " + std::to_string(role) + " with " + std::to_string(size(members)) + " members");
    return members;
}

void agreement() {
    PortBitmap taken = {};
    for (int number = 0; number < TRUNK_GROUPS; ++number) {
        PortBitmap members = judge_group(number);
        for (int p = 0; p < PORT_BITMAP_WORDS * 32; ++p) {
            if (!has(members, p))
                continue;
            bench->holds(
                !has(taken, p), reason::disagrees, "a port is in one group",
                "port " + std::to_string(p) + " is in two");
            add(taken, p);
        }
    }
    for (int p = 0; p < first_group(); ++p) {
        int role = ASK(sys_trunk_portRole_ret, p);
        bool member = role == TRUNK_ROLE_LACP_MEMBER || role == TRUNK_ROLE_STATIC_MEMBER;
        bench->holds(
            member == has(taken, p) && (member || role == TRUNK_ROLE_NONE), reason::disagrees,
            "the role of a member, and of no other port", "role " + std::to_string(role));
    }
    for (int none : {-1, port_count(), 4096})
        bench->holds(
            ASK(sys_trunk_portRole_ret, none) == TRUNK_ROLE_NONE, reason::disagrees,
            "TRUNK_ROLE_NONE for a number that is no port", "another role");
}

// --- Changes: on groups without members, with ports that are free to join one.

bool may_join(int p) {
    std::uint32_t secure = 1;
    if (sys_trunk_portRole_ret(p) != TRUNK_ROLE_NONE ||
        sal_port_securityEnable_get(p, &secure) != 0 || secure)
        return false;
    for (int number = 0; number < MIRROR_GROUPS; ++number) {
        int target = 0;
        std::uint32_t state = 0;
        if (sal_mirror_group_targetPort_get(number, &target, &state) != 0 || (state && target == p))
            return false;
    }
    return true;
}

std::vector<int> free_ports() {
    std::vector<int> ports;
    for (int p = 0; p < first_group(); ++p)
        if (may_join(p))
            ports.push_back(p);
    return ports;
}

std::vector<int> free_groups() {
    std::vector<int> groups;
    for (int number = 0; number < TRUNK_GROUPS; ++number) {
        PortBitmap members = {};
        if (sal_trunk_member_get(number, &members) == 0 && size(members) == 0)
            groups.push_back(number);
    }
    return groups;
}

PortBitmap first_of(const std::vector<int>& ports, std::size_t count) {
    PortBitmap set = {};
    for (std::size_t i = 0; i < count && i < ports.size(); ++i)
        add(set, ports[ports.size() - 1 - i]); // the first port may be the way to the judge
    return set;
}

void set_members(const Kind& kind, int number, const PortBitmap& members) {
    bench->works(
        bench->call(kind.set_name, kind.set, number, &members), "makes a group of these members");
    std::string call = Bench::last();
    PortBitmap stored = {};
    ASK(sal_trunk_member_get, number, &stored);
    bench->count_case();
    if (show(stored) != show(members))
        bench->convict(
            reason::not_stored, call, "the group has these members",
            "sal_trunk_member_get gives " + show(stored));
    agreement();
}

void judge_refusals(
    const Kind& kind, const Kind& other, int number, const std::vector<int>& ports) {
    unchanged(reads(), [&] {
        PortBitmap one = first_of(ports, 1);
        PortBitmap no_port = ports_of(first_group());
        PortBitmap too_many = first_of(ports, static_cast<std::size_t>(kind.most) + 1);
        bench->refuses(
            bench->call(other.set_name, other.set, number, &one),
            "refused for a group that is of the other kind");
        bench->refuses(
            bench->call(kind.set_name, kind.set, number, &no_port),
            "members are logical ports below those of the groups");
        if (size(too_many) > kind.most)
            bench->refuses(
                bench->call(kind.set_name, kind.set, number, &too_many),
                "refused for more members than a group of its kind has");
        for (int wrong : {-1, TRUNK_GROUPS + 0})
            bench->refuses(bench->call(kind.set_name, kind.set, wrong, &one), group.says);
    });
}

void judge_active(int number, const std::vector<int>& ports) {
    PortBitmap active = first_of(ports, 1);
    bench->works(ASK(sal_lacp_activeMode_set, number, &active), "members that speak first");
    PortBitmap outside_it = ports_of(ports.front());
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_lacp_activeMode_set, number, &outside_it),
            "refused for ports that are no members");
    });
}

void judge_kind(const Kind& kind, const Kind& other, int number, int second) {
    std::vector<int> ports = free_ports();
    Undo undo("sal_trunk_group_del", {std::to_string(number)});
    set_members(kind, number, first_of(ports, 2));
    set_members(kind, number, first_of(ports, static_cast<std::size_t>(kind.most)));
    set_members(kind, number, first_of(ports, 2));
    judge_refusals(kind, other, number, ports);
    if (kind.group_role == TRUNK_ROLE_LACP_GROUP && ports.size() > 2)
        judge_active(number, ports);
    PortBitmap taken = first_of(ports, 1);
    unchanged(reads(), [&] {
        bench->refuses(
            bench->call(kind.set_name, kind.set, second, &taken),
            "refused for a port that is in another group");
    });
    set_members(kind, number, {});
    set_members(kind, number, first_of(ports, 2));
    bench->works(ASK(sal_trunk_group_del, number), "ends a group of either kind");
    PortBitmap left = {};
    ASK(sal_trunk_member_get, number, &left);
    bench->holds(
        size(left) == 0, reason::not_stored, "ends a group of either kind",
        std::to_string(size(left)) + " members");
    bench->works(ASK(sal_trunk_group_del, number), "one without members stays as it is");
}

void changes() {
    std::vector<int> groups = free_groups();
    if (groups.size() < 2 || free_ports().size() < 2)
        return bench->remark("no two groups and ports are free: aggregation is not changed");
    back_as_before(reads(), [&] {
        judge_kind(kinds[0], kinds[1], groups[0], groups[1]);
        judge_kind(kinds[1], kinds[0], groups[1], groups[0]);
    });
}

} // namespace

const Family trunk_family = {"trunk", reads, agreement, nullptr, changes};

} // namespace judge
