// Access control lists.
#include "platform/acl.h"

#include <cstring>
#include <map>

#include "driver/acl.h"
#include "judge/changes.h"
#include "judge/family.h"
#include "judge/ports.h"

namespace judge {

namespace {

enum { NAME_SIZE = ACL_NAME_LENGTH + 1 };

const std::uint32_t types[] = {ACL_MAC, ACL_IPV4};
const char* const judges_list[] = {nullptr, "platform_judge_mac", "platform_judge_ipv4"};

const Parameter type = within("type", ACL_MAC, ACL_IPV4);

Operations reads() { return {{NAMED(sal_acl_entry_countByType_get), {type, gives_any("count")}}}; }

// --- What must agree.

struct List {
    std::string name;
    std::uint32_t type;
    std::uint32_t entries;
};

std::string name_at(std::uint32_t of_type, std::uint32_t index) {
    Guarded name(NAME_SIZE);
    if (!bench->works(
            ASK(sal_acl_entry_nameByIdx_get, name.text(), of_type, index), "the name of a list"))
        return "";
    bench->holds(
        name.overrun() == 0, reason::overrun, "`name` holds 33 bytes",
        std::to_string(name.overrun()) + " bytes outside it were written");
    bool ended = bench->holds(
        name.terminated(), reason::unterminated, "names are NUL-terminated", "no NUL in 33 bytes");
    return ended ? name.text() : "";
}

void judge_entry(const Ace& entry, const List& list) {
    bench->holds(
        entry.type == list.type, reason::disagrees, "the type is that of its list",
        std::to_string(entry.type));
    std::string fault = outside("sequence", entry.sequence, 1, INT32_MAX);
    if (fault.empty())
        fault = outside("action", entry.action, 0, 1);
    if (fault.empty() && entry.type == ACL_IPV4 && entry.match.ipv4.action_valid != 1)
        fault = "action_valid is not 1";
    bench->holds(fault.empty(), reason::out_of_range, "an entry of a list", fault);
}

void judge_range(const AceL4Port& port) {
    if (!port.range_valid)
        return;
    std::uint32_t kind = 0, first = 0, last = 0;
    if (bench->works(
            ASK(sal_acl_l4port_range_get, port.range, &kind, &first, &last),
            "a range lives as long as an entry refers to it"))
        bench->holds(
            (kind == 1 || kind == 2) && first <= last && last <= 65535, reason::out_of_range,
            "kind 1 or 2, first and last port",
            std::to_string(kind) + ", " + std::to_string(first) + " to " + std::to_string(last));
}

void judge_entries(const List& list) {
    std::uint32_t last = 0;
    for (std::uint32_t index = 0; index < list.entries; ++index) {
        Guarded buffer(sizeof(Ace));
        if (!bench->works(
                ASK(sal_ace_entry_byIdx_get, list.name.c_str(), list.type, index, buffer.as<Ace>()),
                "an entry of a list"))
            continue;
        bench->holds(
            buffer.overrun() == 0, reason::overrun, "an entry of a list is an Ace",
            std::to_string(buffer.overrun()) + " bytes outside it were written");
        const Ace& entry = *buffer.as<Ace>();
        bench->holds(
            entry.sequence > last, reason::unsorted, "in the order of their sequence",
            std::to_string(last) + ", then " + std::to_string(entry.sequence));
        last = entry.sequence;
        judge_entry(entry, list);
        if (entry.type == ACL_IPV4) {
            judge_range(entry.match.ipv4.source_port);
            judge_range(entry.match.ipv4.destination_port);
        }
    }
    Guarded buffer(sizeof(Ace));
    if (bench->refuses(
            ASK(sal_ace_entry_byIdx_get, list.name.c_str(), list.type, list.entries,
                buffer.as<Ace>()),
            "entries from 0 up to their number"))
        bench->holds(
            buffer.untouched(), reason::touched, "a failing call leaves its outputs unchanged",
            "the entry was written");
}

bool read_list(const std::string& name, std::uint32_t of_type, List& list) {
    std::uint32_t told = 0;
    list = {name, of_type, 0};
    if (bench->works(ASK(sal_acl_entry_typeByName_get, name.c_str(), &told), "a list by its name"))
        bench->holds(
            told == of_type, reason::disagrees, "the type of the list with this name",
            std::to_string(told));
    return bench->works(
        ASK(sal_ace_entry_count_get, name.c_str(), of_type, &list.entries),
        "number of entries of a list");
}

void judge_end_of_names(std::uint32_t of_type, std::uint32_t count) {
    Guarded name(NAME_SIZE);
    if (bench->refuses(
            ASK(sal_acl_entry_nameByIdx_get, name.text(), of_type, count),
            "lists from 0 up to their number"))
        bench->holds(
            name.untouched(), reason::touched, "a failing call leaves its outputs unchanged",
            "the name was written");
}

std::map<std::string, List> judge_lists() {
    std::map<std::string, List> lists;
    for (std::uint32_t of_type : types) {
        std::uint32_t count = 0;
        if (ASK(sal_acl_entry_countByType_get, of_type, &count) != 0)
            continue;
        for (std::uint32_t index = 0; index < count; ++index) {
            std::string name = name_at(of_type, index);
            List list;
            bench->holds(
                !name.empty() && !lists.count(name), reason::disagrees,
                "a name of 1 to 32 characters, unique among the lists of both types",
                show_text(name.c_str()));
            if (!name.empty() && read_list(name, of_type, list)) {
                judge_entries(list);
                lists[name] = list;
            }
        }
        judge_end_of_names(of_type, count);
    }
    return lists;
}

std::string binding_fault(
    const std::map<std::string, List>& lists, const AclPortBinding& binding,
    std::uint32_t of_type) {
    const char* name = binding.name[of_type];
    if (!std::memchr(name, 0, NAME_SIZE))
        return "a name that is not terminated";
    if (!*name)
        return "";
    auto list = lists.find(name);
    if (list == lists.end() || list->second.type != of_type)
        return show_text(name) + " is no list of type " + std::to_string(of_type);
    return list->second.entries ? "" : show_text(name) + " is empty";
}

void judge_bindings(const std::map<std::string, List>& lists) {
    Guarded table(sizeof(AclPortBinding) * ACL_PORTS, 0);
    if (!bench->works(
            ASK(sal_acl_entry_portBinding_get, table.as<AclPortBinding>()),
            "the bindings of all ports"))
        return;
    bench->holds(
        table.overrun() == 0, reason::overrun, "a table with room for ACL_PORTS",
        std::to_string(table.overrun()) + " bytes outside it were written");
    for (int p = 0; p < port_count(); ++p)
        for (std::uint32_t of_type : types) {
            std::string fault = binding_fault(lists, table.as<AclPortBinding>()[p], of_type);
            bool ended = fault.find("not terminated") == fault.npos;
            bench->holds(
                fault.empty(), ended ? reason::disagrees : reason::unterminated,
                "a list of that type that is not empty",
                "port " + std::to_string(p) + ": " + fault);
        }
}

void judge_unknown() {
    std::uint32_t value = 0xA5A5A5A5;
    const char* none = "platform_judge_no_such_list";
    bench->refuses(ASK(sal_acl_entry_typeByName_get, none, &value), "the list with this name");
    bench->holds(
        value == 0xA5A5A5A5, reason::touched, "a failing call leaves its outputs unchanged",
        "the type was written");
    bench->refuses(
        ASK(sal_ace_entry_count_get, none, uint32_t{ACL_MAC}, &value), "the list with this name");
    bench->holds(
        value == 0xA5A5A5A5, reason::touched, "a failing call leaves its outputs unchanged",
        "the count was written");
    for (std::uint32_t of_type : types) {
        int code = ASK(_ace_number_check, of_type);
        bench->holds(
            code >= -1, reason::out_of_range, "0, -1 when there is no room, or a code",
            std::to_string(code));
    }
}

// Whether an index has a range is the driver's affair; a range that it does not have is no output.
void judge_ranges() {
    for (int index = 0; index <= UINT8_MAX; ++index) {
        std::uint32_t words[3] = {0xA5A5A5A5, 0xA5A5A5A5, 0xA5A5A5A5};
        int code =
            ASK(sal_acl_l4port_range_get, static_cast<std::uint8_t>(index), &words[0], &words[1],
                &words[2]);
        bool touched = words[0] != 0xA5A5A5A5 || words[1] != words[0] || words[2] != words[0];
        bench->holds(
            code == 0 || !touched, reason::touched, "a failing call leaves its outputs unchanged",
            "the range was written");
    }
}

void agreement() {
    judge_ranges();
    judge_bindings(judge_lists());
    judge_unknown();
}

// --- Changes: two lists of the judge's own.

Ace entry_of(std::uint32_t of_type, std::uint32_t sequence) {
    Ace entry;
    std::memset(&entry, 0, sizeof entry);
    entry.sequence = sequence;
    entry.action = sequence % 2;
    entry.type = of_type;
    if (of_type == ACL_IPV4) {
        entry.match.ipv4.action_valid = 1;
        entry.match.ipv4.source_ip = 0xC0000201;
        entry.match.ipv4.source_mask = 0xFFFFFFFF;
        entry.match.ipv4.source_ip_valid = 1;
        entry.match.ipv4.protocol = 17;
        entry.match.ipv4.protocol_valid = 1;
    } else {
        entry.match.mac.vlan = 4094;
        entry.match.mac.vlan_valid = 1;
        entry.match.mac.ethertype = 0x88B5; // for experiments
        entry.match.mac.ethertype_valid = 1;
    }
    return entry;
}

bool same_match(const Ace& a, const Ace& b) {
    if (a.type == ACL_MAC)
        return a.match.mac.vlan == b.match.mac.vlan &&
               a.match.mac.ethertype == b.match.mac.ethertype &&
               a.match.mac.vlan_valid == b.match.mac.vlan_valid &&
               a.match.mac.ethertype_valid == b.match.mac.ethertype_valid;
    return a.match.ipv4.source_ip == b.match.ipv4.source_ip &&
           a.match.ipv4.source_mask == b.match.ipv4.source_mask &&
           a.match.ipv4.protocol == b.match.ipv4.protocol &&
           a.match.ipv4.source_ip_valid == b.match.ipv4.source_ip_valid;
}

// Entries are created out of order, and are read in order.
void judge_entry_creation(const char* list, std::uint32_t of_type) {
    const std::uint32_t created[] = {30, 10, INT32_MAX, 20, 1};
    const std::uint32_t ordered[] = {1, 10, 20, 30, INT32_MAX};
    for (std::uint32_t sequence : created) {
        Ace entry = entry_of(of_type, sequence);
        bench->works(
            ASK(sal_ace_entry_create, list, &entry), "adds an entry to a list of its type");
    }
    for (std::uint32_t index = 0; index < 5; ++index) {
        Ace entry;
        std::memset(&entry, 0, sizeof entry);
        ASK(sal_ace_entry_byIdx_get, list, of_type, index, &entry);
        Ace wanted = entry_of(of_type, ordered[index]);
        bench->holds(
            entry.sequence == wanted.sequence, reason::unsorted, "in the order of their sequence",
            std::to_string(entry.sequence) + " instead of " + std::to_string(wanted.sequence));
        bench->holds(
            entry.action == wanted.action && entry.type == wanted.type && same_match(entry, wanted),
            reason::not_stored, "the entry that was created", "another one");
    }
}

void judge_entry_refusals(const char* list, std::uint32_t of_type) {
    unchanged(reads(), [&] {
        Ace taken = entry_of(of_type, 10);
        bench->refuses(
            ASK(sal_ace_entry_create, list, &taken),
            "refused: a sequence number that it has already");
        Ace other = entry_of(of_type == ACL_MAC ? ACL_IPV4 : ACL_MAC, 11);
        bench->refuses(ASK(sal_ace_entry_create, list, &other), "a list of its type");
        for (std::uint32_t wrong : {0u, 0x80000000u, UINT32_MAX}) {
            Ace entry = entry_of(of_type, wrong);
            bench->refuses(ASK(sal_ace_entry_create, list, &entry), "sequence: 1 to 2147483647");
        }
        Ace entry = entry_of(of_type, 12);
        entry.action = 2;
        bench->refuses(ASK(sal_ace_entry_create, list, &entry), "action: 0 deny, 1 permit");
        entry = entry_of(of_type, 12);
        if (of_type == ACL_MAC)
            entry.match.mac.vlan = 4095;
        else
            entry.match.ipv4.type_of_service = 64, entry.match.ipv4.type_of_service_valid = 1;
        bench->refuses(ASK(sal_ace_entry_create, list, &entry), "a value out of range is refused");
        bench->refuses(ASK(sal_ace_entry_del, list, 11u), "the entry of a sequence number");
    });
    std::uint32_t count = 0;
    ASK(sal_ace_entry_count_get, list, of_type, &count);
    bench->holds(
        count == 5, reason::changed_on_failure, "a failing call changes nothing",
        std::to_string(count) + " entries instead of 5");
}

// An entry with a range of ports, which the driver keeps for as long as the entry refers to it.
void judge_range_entry(const char* list) {
    AclPortRange range = {};
    range.kind = 1;
    range.first = 1024;
    range.last = 2047;
    std::uint8_t index = 0;
    if (rsd_acl_l4port_range_set(&range, &index) != 0)
        return bench->remark("the driver takes no port range: an entry with one is not judged");
    Ace entry = entry_of(ACL_IPV4, 15);
    entry.match.ipv4.protocol = 6;
    entry.match.ipv4.destination_port.range = index;
    entry.match.ipv4.destination_port.range_valid = 1;
    if (!bench->works(ASK(sal_ace_entry_create, list, &entry), "adds an entry with a port range"))
        return;
    std::uint32_t kind = 0, first = 0, last = 0;
    bench->works(
        ASK(sal_acl_l4port_range_get, index, &kind, &first, &last), "the range of an entry");
    bench->holds(
        kind == range.kind && first == range.first && last == range.last, reason::not_stored,
        "TCP, first and last port of the range",
        std::to_string(kind) + ", " + std::to_string(first) + " to " + std::to_string(last));
    judge_lists();
    bench->works(ASK(sal_ace_entry_del, list, 15u), "deletes the entry of a sequence number");
}

std::string bound_at(int p, std::uint32_t of_type) {
    std::vector<AclPortBinding> table(ACL_PORTS);
    ASK(sal_acl_entry_portBinding_get, table.data());
    const char* name = table[static_cast<std::size_t>(p)].name[of_type];
    return {name, strnlen(name, NAME_SIZE)};
}

AclPortBinding binding_of(const char* list, std::uint32_t of_type) {
    AclPortBinding binding = {};
    std::strncpy(binding.name[of_type], list, ACL_NAME_LENGTH);
    binding.type = of_type;
    return binding;
}

// While a list is bound, it and its entries cannot be changed.
void judge_bound_list(
    const char* list, std::uint32_t of_type, const AclPortBinding& binding, int p) {
    bench->refuses(
        ASK(sal_acl_entry_del, list, of_type), "a list that is bound to a port is refused");
    bench->refuses(ASK(sal_ace_entry_del, list, 10u), "the entries of a bound list stay");
    Ace entry = entry_of(of_type, 40);
    bench->refuses(ASK(sal_ace_entry_create, list, &entry), "the entries of a bound list stay");
    bench->refuses(
        ASK(sal_acl_entry_bind, &binding, ports_of(p)),
        "refused: a port to which a list of that type is bound already");
}

void judge_binding(const char* list, std::uint32_t of_type, int p) {
    AclPortBinding binding = binding_of(list, of_type);
    Undo undo("sal_acl_entry_unbind", {std::to_string(of_type), words_text(ports_of(p))});
    bench->works(ASK(sal_acl_entry_bind, &binding, ports_of(p)), "binds a list to ports");
    std::string bound = bound_at(p, of_type);
    bench->holds(
        bound == list, reason::not_stored, "the list that is bound", show_text(bound.c_str()));
    judge_bound_list(list, of_type, binding, p);
    bench->works(ASK(sal_acl_entry_unbind, of_type, ports_of(p)), "takes the list off");
    bound = bound_at(p, of_type);
    bench->holds(
        bound.empty(), reason::not_stored, "empty when no list of that type is bound",
        show_text(bound.c_str()));
    bench->works(
        ASK(sal_acl_entry_unbind, of_type, ports_of(p)), "a port without one is left as it is");
}

int unbound_port(std::uint32_t of_type) {
    for (int p = port_count() - 1; p >= 0; --p)
        if (bound_at(p, of_type).empty())
            return p;
    return -1;
}

void judge_list(std::uint32_t of_type) {
    const char* list = judges_list[of_type];
    Undo undo("sal_acl_entry_del", {list, std::to_string(of_type)});
    if (!bench->works(ASK(sal_acl_entry_create, list, of_type), "creates an empty list"))
        return;
    int p = unbound_port(of_type);
    AclPortBinding binding = binding_of(list, of_type);
    unchanged(reads(), [&] {
        bench->refuses(ASK(sal_acl_entry_create, list, of_type), "a name that is taken");
        bench->refuses(
            ASK(sal_acl_entry_create, std::string(NAME_SIZE, 'n').c_str(), of_type),
            "a longer name than 32 characters is refused");
        bench->refuses(ASK(sal_acl_entry_create, "judge", 3u), type.says);
        if (p >= 0)
            bench->refuses(
                ASK(sal_acl_entry_bind, &binding, ports_of(p)), "an empty list cannot be bound");
    });
    judge_entry_creation(list, of_type);
    judge_lists();
    judge_entry_refusals(list, of_type);
    if (of_type == ACL_IPV4)
        judge_range_entry(list);
    if (p >= 0)
        judge_binding(list, of_type, p);
    bench->works(ASK(sal_ace_entry_del, list, 20u), "deletes the entry of a sequence number");
    std::uint32_t count = 0;
    ASK(sal_ace_entry_count_get, list, of_type, &count);
    bench->holds(
        count == 4, reason::not_stored, "deletes the entry", std::to_string(count) + " are left");
    bench->works(ASK(sal_acl_entry_del, list, of_type), "deletes a list with its entries");
    judge_lists();
}

void changes() {
    for (std::uint32_t of_type : types) {
        if (ASK(_ace_number_check, of_type) == 0)
            back_as_before(reads(), [&] { judge_list(of_type); });
        else
            bench->remark("no room for entries of type " + std::to_string(of_type));
    }
}

} // namespace

const Family acl_family = {"acl", reads, agreement, nullptr, changes};

} // namespace judge
