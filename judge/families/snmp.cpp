// The switch's SNMP agent, and the RMON events that notify under a community.
#include "platform/snmp.h"

#include <cstdio>
#include <cstring>

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

template <std::size_t size> std::string ended(const char* name, const char (&text)[size]) {
    return unterminated(name, text, size);
}

std::string first_of(std::initializer_list<std::string> faults) {
    for (const std::string& fault : faults)
        if (!fault.empty())
            return fault;
    return "";
}

std::string fault_of(const SnmpCommunity& community) {
    std::string fault = ended("name", community.name);
    if (!fault.empty() || !community.name[0])
        return fault;
    return first_of(
        {std::strlen(community.name) > SNMP_COMMUNITY_LENGTH ? "name has more than 20 characters"
                                                             : "",
         outside("right", community.right, SNMP_READ_ONLY, SNMP_READ_WRITE),
         outside("internal", community.internal, 0, 1)});
}

std::string fault_of(const SnmpView& view) {
    std::string fault = first_of({ended("name", view.name), ended("subtree", view.subtree)});
    return fault.empty() && view.name[0] ? outside("included", view.included, 0, 1) : fault;
}

std::string fault_of(const SnmpTarget& target) {
    std::string fault =
        first_of({ended("host", target.host), ended("community", target.community)});
    if (!fault.empty() || !target.host[0])
        return fault;
    return first_of(
        {outside("version", target.version, SNMP_VERSION_V1, SNMP_VERSION_V3),
         outside("type", target.type, SNMP_TRAP_V1, SNMP_INFORM_V3),
         outside("udp", target.udp, 1, 65535)});
}

std::string fault_of(const RmonEvent& event) {
    return first_of({ended("community", event.community), ended("description", event.description)});
}

std::string fault_of(const RmonEventRuntime& runtime) {
    return outside("active", runtime.active, 0, 1);
}

// Slots count from 0; the header does not say where the views end.
Parameter slot(int slots) { return within("slot", 0, slots - 1); }

const Parameter first_slot = asked(
    "slot", "0, the view of everything", [] { return Numbers{0}; }, nullptr);

Operations reads() {
    return {
        {NAMED(sal_snmp_enable_get), {gives_flag("enable")}},
        {NAMED(sal_snmp_com2sec_get),
         {slot(SNMP_COMMUNITIES), gives_record<SnmpCommunity>("community", fault_of)}},
        {NAMED(sal_snmp_view_get), {first_slot, gives_record<SnmpView>("view", fault_of)}},
        {NAMED(sal_snmp_target_get),
         {slot(SNMP_TARGETS), gives_record<SnmpTarget>("target", fault_of)}},
        {NAMED(sal_rmon_event_get),
         {slot(SNMP_RMON_EVENTS), gives_record<RmonEvent>("event", fault_of)}},
        {NAMED(sal_rmon_eventRuntime_get),
         {slot(SNMP_RMON_EVENTS), varying(gives_record<RmonEventRuntime>("runtime", fault_of))}},
    };
}

Settings settings() {
    return {{NAMED(sal_snmp_enable_set), {}, {flag("enable")}, outputs(sal_snmp_enable_get)}};
}

// --- What must agree.

std::vector<std::string> communities() {
    std::vector<std::string> names;
    for (int at = 0; at < SNMP_COMMUNITIES; ++at) {
        SnmpCommunity community = {};
        if (sal_snmp_com2sec_get(at, &community) == 0 &&
            std::memchr(community.name, 0, sizeof community.name) && community.name[0])
            names.push_back(community.name);
    }
    return names;
}

bool read_group(const std::string& community, int model, SnmpGroup& group) {
    int index = 12345;
    if (!bench->works(
            ASK(sal_snmp_groupIndex_get, community.c_str(), model, &index),
            "that there is none is no failure"))
        return false;
    bool known = bench->holds(
        index >= SNMP_NO_INDEX && index != 12345, reason::out_of_range,
        "an index, or SNMP_NO_INDEX", std::to_string(index));
    if (!known || index == SNMP_NO_INDEX)
        return false;
    Guarded buffer(sizeof(SnmpGroup));
    if (!bench->works(
            ASK(sal_snmp_group_get, index, buffer.as<SnmpGroup>()), "a group by its index"))
        return false;
    bench->holds(
        buffer.overrun() == 0, reason::overrun, "a group's record",
        std::to_string(buffer.overrun()) + " bytes outside it were written");
    group = *buffer.as<SnmpGroup>();
    std::string fault = first_of(
        {ended("community", group.community), ended("name", group.name),
         ended("read_view", group.read_view), ended("write_view", group.write_view)});
    if (!bench->holds(fault.empty(), reason::unterminated, "texts are NUL-terminated", fault))
        return false;
    bench->holds(
        community == group.community && group.model == static_cast<uint32_t>(model),
        reason::disagrees, "the record of a community under a model",
        show_text(group.community) + ", model " + std::to_string(group.model));
    return true;
}

void judge_access(const SnmpGroup& group) {
    int index = 12345;
    if (!bench->works(
            ASK(sal_snmp_accessIndex_get, group.name, static_cast<int>(group.model), &index),
            "that there is none is no failure") ||
        index == SNMP_NO_INDEX)
        return;
    SnmpAccess access;
    std::memset(&access, 0xA5, sizeof access);
    if (!bench->works(ASK(sal_snmp_access_get, index, &access), "an access record by its index"))
        return;
    std::string fault = first_of(
        {ended("group", access.group), ended("read_view", access.read_view),
         ended("write_view", access.write_view)});
    if (!bench->holds(fault.empty(), reason::unterminated, "texts are NUL-terminated", fault))
        return;
    bench->holds(
        std::strcmp(access.group, group.name) == 0 && access.model == group.model,
        reason::disagrees, "the record of a group under a model",
        show_text(access.group) + ", model " + std::to_string(access.model));
    bench->holds(
        std::strcmp(access.read_view, group.read_view) == 0 &&
            std::strcmp(access.write_view, group.write_view) == 0,
        reason::disagrees, "what the group's access record of this model gives it",
        show_text(access.read_view) + " and " + show_text(access.write_view));
}

void judge_absent() {
    for (int model : {SNMP_MODEL_V1 + 0, SNMP_MODEL_V2C + 0}) {
        int index = 12345;
        if (bench->works(
                ASK(sal_snmp_groupIndex_get, "platform_judge_none", model, &index),
                "that there is none is no failure"))
            bench->holds(
                index == SNMP_NO_INDEX, reason::disagrees, "SNMP_NO_INDEX", std::to_string(index));
        index = 12345;
        if (bench->works(
                ASK(sal_snmp_accessIndex_get, "platform_judge_none", model, &index),
                "SNMP_NO_INDEX, and 0 returned, when there is none"))
            bench->holds(
                index == SNMP_NO_INDEX, reason::disagrees, "SNMP_NO_INDEX", std::to_string(index));
    }
    SnmpGroup group;
    SnmpAccess access;
    bench->refuses(ASK(sal_snmp_group_get, int{SNMP_NO_INDEX}, &group), "no group's index");
    bench->refuses(ASK(sal_snmp_access_get, int{SNMP_NO_INDEX}, &access), "no record's index");
}

void agreement() {
    for (const std::string& community : communities())
        for (int model : {SNMP_MODEL_V1 + 0, SNMP_MODEL_V2C + 0}) {
            SnmpGroup group;
            if (read_group(community, model, group))
                judge_access(group);
        }
    SnmpView view = {};
    if (ASK(sal_snmp_view_get, 0, &view) == 0)
        bench->holds(
            view.name[0] != '\0', reason::disagrees, "slot 0 is the view of everything", "no name");
    judge_absent();
}

// --- Changes: a community, group, access records and a target of the judge's own.

const char* const judges_community = "platform_judge_cmty"; // 19 characters
const char* const judges_group = "platform_judge_group";
const char* const judges_host = "192.0.2.99";

SnmpCommunity community_of(const std::string& name, std::uint32_t right) {
    SnmpCommunity community = {};
    std::memcpy(community.name, name.data(), std::min(name.size(), sizeof community.name - 1));
    community.right = right;
    return community;
}

bool has_community(const std::string& name, std::uint32_t right) {
    for (int at = 0; at < SNMP_COMMUNITIES; ++at) {
        SnmpCommunity community = {};
        if (ASK(sal_snmp_com2sec_get, at, &community) == 0 && name == community.name)
            return community.right == right && community.internal == 0;
    }
    return false;
}

void judge_community(std::uint32_t right) {
    SnmpCommunity community = community_of(judges_community, right);
    Undo undo("sal_snmp_com2sec_del", {judges_community});
    if (!bench->works(ASK(sal_snmp_com2sec_add, &community), "takes the first free slot"))
        return;
    bench->holds(
        has_community(judges_community, right), reason::not_stored, "the community is in a slot",
        "it is in none");
    unchanged(reads(), [&] {
        bench->refuses(ASK(sal_snmp_com2sec_add, &community), "refused for a name that exists");
        SnmpCommunity longer = community_of(std::string(SNMP_COMMUNITY_LENGTH + 1, 'j'), 0);
        bench->refuses(ASK(sal_snmp_com2sec_add, &longer), "a name of at most 20 characters");
        bench->refuses(
            ASK(sal_snmp_com2sec_del, "platform_judge_none"),
            "refused for a name that no slot has");
    });
    bench->works(ASK(sal_snmp_com2sec_del, judges_community), "empties the slot");
    bench->holds(
        !has_community(judges_community, right), reason::not_stored, "empties the slot",
        "the community is there");
}

SnmpAccess access_of(int model, const char* read_view, const char* write_view) {
    SnmpAccess access = {};
    std::strcpy(access.group, judges_group);
    access.model = static_cast<std::uint32_t>(model);
    std::snprintf(access.read_view, SNMP_NAME_SIZE, "%s", read_view);
    std::snprintf(access.write_view, SNMP_NAME_SIZE, "%s", write_view);
    return access;
}

void judge_group_and_access(int model, const char* view) {
    SnmpCommunity community = community_of(judges_community, SNMP_READ_WRITE);
    SnmpAccess access = access_of(model, view, view);
    Undo no_community("sal_snmp_com2sec_del", {judges_community});
    Undo no_access("sal_snmp_access_del", {judges_group, std::to_string(model)});
    Undo no_group("sal_snmp_group_del", {judges_community, std::to_string(model)});
    bench->works(ASK(sal_snmp_accessView_test, judges_group), "there are views");
    if (!bench->works(ASK(sal_snmp_basic_accessAdd_test, judges_group), "there is room") ||
        !bench->works(ASK(sal_snmp_com2sec_add, &community), "takes the first free slot") ||
        !bench->works(
            ASK(sal_snmp_group_add, judges_community, model, judges_group), "a group is added") ||
        !bench->works(ASK(sal_snmp_access_add, &access), "an access record is added"))
        return;
    SnmpGroup group;
    if (bench->holds(
            read_group(judges_community, model, group), reason::not_stored,
            "the index of the record of a community under a model", "none")) {
        bench->holds(
            std::strcmp(group.name, judges_group) == 0 && std::strcmp(group.read_view, view) == 0,
            reason::not_stored, "the group that was added",
            show_text(group.name) + ", read view " + show_text(group.read_view));
        judge_access(group);
    }
    unchanged(reads(), [&] {
        bench->refuses(ASK(sal_snmp_access_add, &access), "refused when the record exists");
        SnmpAccess blind = access_of(model, "", "");
        std::strcpy(blind.group, "platform_judge_blind");
        bench->refuses(ASK(sal_snmp_access_add, &blind), "refused without a read view");
        SnmpAccess lost = access_of(model, "platform_judge_none", "");
        std::strcpy(lost.group, "platform_judge_lost");
        bench->refuses(ASK(sal_snmp_access_add, &lost), "refused when a view does not exist");
        bench->refuses(
            ASK(sal_snmp_group_add, judges_community, model, judges_group),
            "refused for a community that has a group under that model already");
    });
    bench->works(ASK(sal_snmp_com2sec_del, judges_community), "empties the slot");
    bench->works(ASK(sal_snmp_group_del, judges_community, model), "a group is taken out");
    bench->works(ASK(sal_snmp_access_del, judges_group, model), "an access record is taken out");
    judge_absent();
    int index = 0;
    ASK(sal_snmp_groupIndex_get, judges_community, model, &index);
    bench->holds(
        index == SNMP_NO_INDEX, reason::not_stored, "a group is taken out", std::to_string(index));
}

SnmpTarget target_of(std::uint32_t version, std::uint32_t type) {
    SnmpTarget target = {};
    std::strcpy(target.host, judges_host);
    target.version = version;
    target.type = type;
    std::strcpy(target.community, "public");
    target.udp = 162;
    target.timeout = 15;
    target.retry = 3;
    return target;
}

bool has_target(const SnmpTarget& wanted) {
    for (int at = 0; at < SNMP_TARGETS; ++at) {
        SnmpTarget target = {};
        if (ASK(sal_snmp_target_get, at, &target) == 0 &&
            std::strcmp(target.host, wanted.host) == 0 && target.version == wanted.version &&
            target.type == wanted.type)
            return std::strcmp(target.community, wanted.community) == 0 &&
                   target.udp == wanted.udp && target.timeout == wanted.timeout &&
                   target.retry == wanted.retry;
    }
    return false;
}

void judge_target(const SnmpTarget& target) {
    int version = static_cast<int>(target.version);
    int type = static_cast<int>(target.type);
    Undo undo("sal_snmp_target_del", {judges_host, std::to_string(version), std::to_string(type)});
    if (!bench->works(ASK(sal_snmp_target_add, &target), "takes the first free slot"))
        return;
    bench->holds(
        has_target(target), reason::not_stored, "the target is in a slot", "it is in none");
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_snmp_target_add, &target),
            "refused for a host that has a target of that version and type already");
        SnmpTarget wrong = target;
        std::strcpy(wrong.host, "192.0.2.98");
        wrong.udp = 0;
        bench->refuses(ASK(sal_snmp_target_add, &wrong), "udp: port, 1 to 65535");
        wrong.udp = 65536;
        bench->refuses(ASK(sal_snmp_target_add, &wrong), "udp: port, 1 to 65535");
    });
    bench->works(ASK(sal_snmp_target_del, judges_host, version, type), "empties the slot");
    bench->holds(!has_target(target), reason::not_stored, "empties the slot", "it is there");
    bench->refuses(
        ASK(sal_snmp_target_del, judges_host, version, type),
        "refused when there is no such target");
}

int free_slots() { return SNMP_COMMUNITIES - static_cast<int>(communities().size()); }

bool free_target() {
    for (int at = 0; at < SNMP_TARGETS; ++at) {
        SnmpTarget target = {};
        if (sal_snmp_target_get(at, &target) == 0 && !target.host[0])
            return true;
    }
    return false;
}

void changes() {
    SnmpView view = {};
    back_as_before(reads(), [&] {
        bool room = free_slots() > 0;
        if (!room)
            bench->remark("no community slot is free: none is added");
        for (std::uint32_t right : {SNMP_READ_ONLY, SNMP_READ_WRITE})
            if (room)
                judge_community(right);
        if (room && ASK(sal_snmp_view_get, 0, &view) == 0 && view.name[0])
            for (int model : {SNMP_MODEL_V1 + 0, SNMP_MODEL_V2C + 0})
                judge_group_and_access(model, view.name);
        if (!free_target())
            return bench->remark("no target slot is free: none is added");
        judge_target(target_of(SNMP_VERSION_V1, SNMP_TRAP_V1));
        judge_target(target_of(SNMP_VERSION_V2C, SNMP_TRAP_V2C));
        judge_target(target_of(SNMP_VERSION_V2C, SNMP_INFORM_V2C));
    });
}

} // namespace

const Family snmp_family = {"snmp", reads, agreement, settings, changes};

} // namespace judge
