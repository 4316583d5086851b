// Platform library: link aggregation.
#include "sim/trunks.h"

#include "platform/trunk.h"
#include "sim/call.h"
#include "sim/vlans.h"

namespace sim {

namespace {

int group_role(const TrunkGroup& group) {
    if (group.empty())
        return TRUNK_ROLE_NONE;
    return group.lacp ? TRUNK_ROLE_LACP_GROUP : TRUNK_ROLE_STATIC_GROUP;
}

int member_role(const Trunks& trunks, int port) {
    for (const TrunkGroup& group : trunks.groups)
        if (has_bit(group.members, port))
            return group.lacp ? TRUNK_ROLE_LACP_MEMBER : TRUNK_ROLE_STATIC_MEMBER;
    return TRUNK_ROLE_NONE;
}

} // namespace

void TrunkGroup::fields(Fields& f) {
    f.boolean("lacp", lacp);
    f.bits("members", members.words, PORT_BITMAP_WORDS);
}

} // namespace sim

using namespace sim;

int sys_trunk_portRole_ret(int port) {
    return value(
        "sys_trunk_portRole_ret",
        [&](Switch& s) {
            int first_group = s.logical_ports() - TRUNK_GROUPS;
            if (!s.has_port(port))
                return static_cast<int>(TRUNK_ROLE_NONE);
            if (port >= first_group)
                return group_role(s.trunks.groups[static_cast<std::size_t>(port - first_group)]);
            return member_role(s.trunks, port);
        },
        port);
}
