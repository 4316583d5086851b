// Platform library: SNMP and RMON events.
#include "sim/library/snmp.h"

#include <algorithm>

#include "sim/library/call.h"

namespace sim {

namespace {

constexpr std::size_t longest_name = SNMP_NAME_SIZE - 1;
constexpr std::size_t longest_host = SNMP_HOST_SIZE - 1;
constexpr std::size_t longest_text = 127;
constexpr std::size_t most_groups = 16;
constexpr std::size_t most_accesses = 16;

bool within(int value, int low, int high) { return value >= low && value <= high; }

bool is_model(int model) { return model == SNMP_MODEL_V1 || model == SNMP_MODEL_V2C; }

template <std::size_t size> void put(char (&field)[size], const std::string& text) {
    copy_text(field, size, text);
}

// A record by its slot, filled in by `fill`.
template <class Records, class Record, class Fill>
int slot_get(const char* name, Records Snmp::*table, int slot, Record* record, Fill fill) {
    return call(
        name,
        [&](Switch& s) {
            auto& records = s.snmp.*table;
            if (!within(slot, 0, static_cast<int>(records.size()) - 1))
                return code_bad_value;
            *record = {};
            fill(s.snmp, records[static_cast<std::size_t>(slot)], *record);
            return code_ok;
        },
        slot);
}

auto find_group(Snmp& snmp, const std::string& community, int model) {
    return std::ranges::find_if(snmp.groups, [&](const CommunityGroup& group) {
        return group.community == community && group.model == model;
    });
}

auto find_access(Snmp& snmp, const std::string& group, int model) {
    return std::ranges::find_if(snmp.accesses, [&](const GroupAccess& access) {
        return access.group == group && access.model == model;
    });
}

bool has_view(const Snmp& snmp, const std::string& name) {
    return !name.empty() && std::ranges::find(snmp.views, name, &View::name) != snmp.views.end();
}

template <class Records, class At> int index_of(const Records& records, At at) {
    return at == records.end() ? static_cast<int>(SNMP_NO_INDEX)
                               : static_cast<int>(at - records.begin());
}

int service(const char* name, bool (*runs)(const Snmp&)) {
    return call(name, [&](Switch& s) {
        s.snmp.running = runs(s.snmp);
        return code_ok;
    });
}

std::string show_community(const SnmpCommunity* community) {
    if (!community)
        return "null";
    return std::string("{") + community->name + ", right " + std::to_string(community->right) + "}";
}

std::string show_access(const SnmpAccess* access) {
    if (!access)
        return "null";
    return std::string("{") + access->group + ", model " + std::to_string(access->model) +
           ", read " + access->read_view + ", write " + access->write_view + "}";
}

std::string show_target(const SnmpTarget* target) {
    if (!target)
        return "null";
    return std::string("{") + target->host + ", version " + std::to_string(target->version) +
           ", type " + std::to_string(target->type) + ", community " + target->community +
           ", udp " + std::to_string(target->udp) + ", timeout " + std::to_string(target->timeout) +
           ", retry " + std::to_string(target->retry) + "}";
}

int check_target(const SnmpTarget& target) {
    constexpr int version_of_type[] = {
        SNMP_VERSION_V1, SNMP_VERSION_V2C, SNMP_VERSION_V2C, SNMP_VERSION_V3, SNMP_VERSION_V3};
    if (target.type > SNMP_INFORM_V3 ||
        target.version != static_cast<uint32_t>(version_of_type[target.type]))
        return code_bad_value;
    if (!target.host[0] || (target.version != SNMP_VERSION_V3 && !target.community[0]))
        return code_bad_text;
    bool good = target.udp >= 1 && target.udp <= UINT16_MAX && within(target.timeout, 1, 300) &&
                within(target.retry, 1, 255);
    return good ? code_ok : code_bad_value;
}

auto find_target(Snmp& snmp, const std::string& host, int version, int type) {
    return std::ranges::find_if(snmp.targets, [&](const Target& target) {
        return target.host == host && target.version == version && target.type == type;
    });
}

} // namespace

void Community::fields(Fields& f) {
    f.text("name", name, SNMP_COMMUNITY_LENGTH);
    f.integer("right", right, SNMP_READ_ONLY, SNMP_READ_WRITE);
    f.boolean("internal", internal);
}

void CommunityGroup::fields(Fields& f) {
    f.text("community", community, SNMP_COMMUNITY_LENGTH);
    f.integer("model", model, SNMP_MODEL_V1, SNMP_MODEL_V2C);
    f.text("group", group, longest_name);
}

void GroupAccess::fields(Fields& f) {
    f.text("group", group, longest_name);
    f.integer("model", model, SNMP_MODEL_V1, SNMP_MODEL_V2C);
    f.text("read_view", read_view, longest_name);
    f.text("write_view", write_view, longest_name);
}

void View::fields(Fields& f) {
    f.text("name", name, longest_name);
    f.text("subtree", subtree, longest_text);
    f.boolean("included", included);
}

void Target::fields(Fields& f) {
    f.text("host", host, longest_host);
    f.integer("version", version, 0, INT32_MAX);
    f.integer("type", type, SNMP_TRAP_V1, SNMP_INFORM_V3);
    f.text("community", community, longest_name);
    f.integer("udp", udp, 1, UINT16_MAX);
    f.integer("timeout", timeout, 1, 300);
    f.integer("retry", retry, 1, 255);
}

void Event::fields(Fields& f) {
    f.boolean("active", active);
    f.text("community", community, longest_name);
    f.text("description", description, longest_text);
}

Snmp::Snmp() {
    views[0] = {"all", ".1", true};
    add_community("public", SNMP_READ_ONLY);
}

void Snmp::add_community(const std::string& name, int right) {
    auto free = std::ranges::find(communities, std::string(), &Community::name);
    if (free == communities.end())
        return;
    *free = {name, right, false};
    std::string write_view = right == SNMP_READ_WRITE ? views[0].name : "";
    for (int model : {SNMP_MODEL_V1, SNMP_MODEL_V2C}) {
        groups.push_back({name, model, "NS_group_" + name});
        accesses.push_back({"NS_group_" + name, model, views[0].name, write_view});
    }
}

void Snmp::config(Fields& f) {
    f.boolean("enable", enable);
    f.slots("communities", communities);
    f.list("groups", groups, most_groups);
    f.list("accesses", accesses, most_accesses);
    f.slots("views", views);
    f.slots("targets", targets);
    f.slots("events", events);
    if (f.reading())
        running = enable;
}

} // namespace sim

using namespace sim;

int sal_snmp_enable_get(uint32_t* enable) {
    return call("sal_snmp_enable_get", [&](Switch& s) {
        *enable = s.snmp.enable;
        return code_ok;
    });
}

int sal_snmp_enable_set(int enable) {
    return call(
        "sal_snmp_enable_set",
        [&](Switch& s) {
            if (!within(enable, 0, 1))
                return code_bad_value;
            s.snmp.enable = enable == 1;
            return code_ok;
        },
        enable);
}

int cmd_snmp_demo_restart(void) {
    return service("cmd_snmp_demo_restart", [](const Snmp&) { return true; });
}

int sal_snmp_stop(void) {
    return service("sal_snmp_stop", [](const Snmp&) { return false; });
}

int sal_snmp_restart(void) {
    return service("sal_snmp_restart", [](const Snmp& snmp) { return snmp.enable; });
}

int sal_snmp_com2sec_get(int slot, SnmpCommunity* community) {
    return slot_get(
        "sal_snmp_com2sec_get", &Snmp::communities, slot, community,
        [](const Snmp&, const Community& from, SnmpCommunity& to) {
            put(to.name, from.name);
            to.right = static_cast<uint32_t>(from.right);
            to.internal = from.internal;
        });
}

int sal_snmp_com2sec_add(const SnmpCommunity* community) {
    return call(
        "sal_snmp_com2sec_add",
        [&](Switch& s) {
            if (!community)
                return code_null;
            std::string name = community->name;
            if (name.empty() || community->right > SNMP_READ_WRITE || community->internal)
                return code_bad_value;
            if (name.size() > SNMP_COMMUNITY_LENGTH)
                return code_too_long;
            auto& slots = s.snmp.communities;
            if (std::ranges::find(slots, name, &Community::name) != slots.end())
                return code_exists;
            auto free = std::ranges::find(slots, std::string(), &Community::name);
            if (free == slots.end())
                return code_table_full;
            *free = {name, static_cast<int>(community->right), false};
            return code_ok;
        },
        show_community(community));
}

int sal_snmp_com2sec_del(const char* name) {
    return call(
        "sal_snmp_com2sec_del",
        [&](Switch& s) {
            if (!name || !*name)
                return code_null;
            auto& slots = s.snmp.communities;
            auto at = std::ranges::find(slots, std::string(name), &Community::name);
            if (at == slots.end())
                return code_not_found;
            bool used = std::ranges::any_of(s.snmp.events, [&](const Event& event) {
                return event.active && event.community == name;
            });
            if (used)
                return code_busy;
            *at = {};
            return code_ok;
        },
        name);
}

int sal_snmp_groupIndex_get(const char* community, int model, int* index) {
    return call(
        "sal_snmp_groupIndex_get",
        [&](Switch& s) {
            if (!is_model(model))
                return code_bad_value;
            *index = index_of(s.snmp.groups, find_group(s.snmp, community, model));
            return code_ok;
        },
        community, model);
}

int sal_snmp_group_get(int index, SnmpGroup* group) {
    return slot_get(
        "sal_snmp_group_get", &Snmp::groups, index, group,
        [](Snmp& snmp, const CommunityGroup& from, SnmpGroup& to) {
            put(to.community, from.community);
            to.model = static_cast<uint32_t>(from.model);
            put(to.name, from.group);
            auto access = find_access(snmp, from.group, from.model);
            if (access == snmp.accesses.end())
                return;
            put(to.read_view, access->read_view);
            put(to.write_view, access->write_view);
        });
}

int sal_snmp_group_add(const char* community, int model, const char* group) {
    return call(
        "sal_snmp_group_add",
        [&](Switch& s) {
            if (!community || !group)
                return code_null;
            if (!is_model(model))
                return code_bad_value;
            std::string name = community;
            std::string group_name = group;
            if (name.size() > SNMP_COMMUNITY_LENGTH || group_name.size() > longest_name)
                return code_too_long;
            if (find_group(s.snmp, name, model) != s.snmp.groups.end())
                return code_exists;
            if (s.snmp.groups.size() >= most_groups)
                return code_table_full;
            s.snmp.groups.push_back({name, model, group_name});
            return code_ok;
        },
        community, model, group);
}

int sal_snmp_group_del(const char* community, int model) {
    return call(
        "sal_snmp_group_del",
        [&](Switch& s) {
            auto at = find_group(s.snmp, community, model);
            if (at == s.snmp.groups.end())
                return code_not_found;
            s.snmp.groups.erase(at);
            return code_ok;
        },
        community, model);
}

int sal_snmp_accessIndex_get(const char* group, int model, int* index) {
    return call(
        "sal_snmp_accessIndex_get",
        [&](Switch& s) {
            if (!is_model(model))
                return code_bad_value;
            *index = index_of(s.snmp.accesses, find_access(s.snmp, group, model));
            return code_ok;
        },
        group, model);
}

int sal_snmp_access_get(int index, SnmpAccess* access) {
    return slot_get(
        "sal_snmp_access_get", &Snmp::accesses, index, access,
        [](const Snmp&, const GroupAccess& from, SnmpAccess& to) {
            put(to.group, from.group);
            to.model = static_cast<uint32_t>(from.model);
            put(to.read_view, from.read_view);
            put(to.write_view, from.write_view);
        });
}

int sal_snmp_access_add(const SnmpAccess* access) {
    return call(
        "sal_snmp_access_add",
        [&](Switch& s) {
            if (!access)
                return code_null;
            int model = static_cast<int>(access->model);
            if (!access->group[0] || !is_model(model))
                return code_bad_value;
            bool views = has_view(s.snmp, access->read_view) &&
                         (!access->write_view[0] || has_view(s.snmp, access->write_view));
            if (!views)
                return code_not_found;
            if (find_access(s.snmp, access->group, model) != s.snmp.accesses.end())
                return code_exists;
            if (s.snmp.accesses.size() >= most_accesses)
                return code_table_full;
            s.snmp.accesses.push_back(
                {access->group, model, access->read_view, access->write_view});
            return code_ok;
        },
        show_access(access));
}

int sal_snmp_access_del(const char* group, int model) {
    return call(
        "sal_snmp_access_del",
        [&](Switch& s) {
            auto at = find_access(s.snmp, group, model);
            if (at == s.snmp.accesses.end())
                return code_not_found;
            s.snmp.accesses.erase(at);
            return code_ok;
        },
        group, model);
}

int sal_snmp_accessView_test(const char* group) {
    return call(
        "sal_snmp_accessView_test",
        [&](Switch& s) {
            bool some = std::ranges::any_of(
                s.snmp.views, [](const View& view) { return !view.name.empty(); });
            return some ? code_ok : code_not_found;
        },
        group);
}

int sal_snmp_basic_accessAdd_test(const char* group) {
    return call(
        "sal_snmp_basic_accessAdd_test",
        [&](Switch& s) {
            if (!group || !*group)
                return code_null;
            if (std::string(group).size() > longest_name)
                return code_too_long;
            return s.snmp.accesses.size() + 2 > most_accesses ? code_table_full : code_ok;
        },
        group);
}

int sal_snmp_view_get(int slot, SnmpView* view) {
    return slot_get(
        "sal_snmp_view_get", &Snmp::views, slot, view,
        [](const Snmp&, const View& from, SnmpView& to) {
            put(to.name, from.name);
            put(to.subtree, from.subtree);
            to.included = from.included;
        });
}

int sal_snmp_target_get(int slot, SnmpTarget* target) {
    return slot_get(
        "sal_snmp_target_get", &Snmp::targets, slot, target,
        [](const Snmp&, const Target& from, SnmpTarget& to) {
            put(to.host, from.host);
            to.version = static_cast<uint32_t>(from.version);
            to.type = static_cast<uint32_t>(from.type);
            put(to.community, from.community);
            to.udp = static_cast<uint32_t>(from.udp);
            to.timeout = static_cast<uint16_t>(from.timeout);
            to.retry = static_cast<uint16_t>(from.retry);
        });
}

int sal_snmp_target_add(const SnmpTarget* target) {
    return call(
        "sal_snmp_target_add",
        [&](Switch& s) -> int {
            if (!target)
                return code_null;
            if (int code = check_target(*target))
                return code;
            auto& slots = s.snmp.targets;
            int version = static_cast<int>(target->version);
            int type = static_cast<int>(target->type);
            if (find_target(s.snmp, target->host, version, type) != slots.end())
                return code_exists;
            auto free = std::ranges::find(slots, std::string(), &Target::host);
            if (free == slots.end())
                return code_table_full;
            *free = {target->host,
                     version,
                     type,
                     target->community,
                     static_cast<int>(target->udp),
                     target->timeout,
                     target->retry};
            return code_ok;
        },
        show_target(target));
}

int sal_snmp_target_del(const char* host, int version, int type) {
    return call(
        "sal_snmp_target_del",
        [&](Switch& s) {
            if (!host || !*host)
                return code_null;
            auto at = find_target(s.snmp, host, version, type);
            if (at == s.snmp.targets.end())
                return code_not_found;
            *at = {};
            return code_ok;
        },
        host, version, type);
}

int sal_rmon_event_get(int slot, RmonEvent* event) {
    return slot_get(
        "sal_rmon_event_get", &Snmp::events, slot, event,
        [](const Snmp&, const Event& from, RmonEvent& to) {
            put(to.community, from.community);
            put(to.description, from.description);
        });
}

int sal_rmon_eventRuntime_get(int slot, RmonEventRuntime* runtime) {
    return slot_get(
        "sal_rmon_eventRuntime_get", &Snmp::events, slot, runtime,
        [](const Snmp&, const Event& from, RmonEventRuntime& to) { to.active = from.active; });
}
