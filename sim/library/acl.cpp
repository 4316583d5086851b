// Platform library: access control lists.
#include "sim/library/acl.h"

#include <algorithm>
#include <cstring>

#include "driver/acl.h"
#include "sim/instruments/fields.h"
#include "sim/library/call.h"

namespace sim {

namespace {

// The driver's commands, for a configuration that is loaded before the board runs.
constexpr std::uint32_t list_create = 257;
constexpr std::uint32_t list_bind = 259;
constexpr std::uint32_t entry_create = 261;

bool is_type(std::uint32_t type) { return type == ACL_MAC || type == ACL_IPV4; }

// 0, or why a name cannot be one.
int check_name(const char* name) {
    if (!name)
        return code_null;
    std::string text(name);
    if (text.size() > ACL_NAME_LENGTH)
        return code_too_long;
    bool printable = std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
    return !text.empty() && printable ? code_ok : code_bad_text;
}

// The list of that name and type, or null.
AclList* list_of(Switch& s, const char* name, std::uint32_t type) {
    AclList* list = name ? s.acl.find(name) : nullptr;
    return list && list->type == type ? list : nullptr;
}

bool is_bound(const Switch& s, const AclList& list) {
    return std::ranges::any_of(
        s.acl.bound, [&](const auto& names) { return names[list.type] == list.name; });
}

template <class Visit> int each_port(Switch& s, const PortBitmap& ports, Visit visit) {
    for (int port = 0; port < ACL_PORTS; ++port) {
        if (!(ports.words[port / 32] >> (port % 32) & 1))
            continue;
        if (!s.has_port(port))
            return code_no_port;
        if (int code = visit(s.acl.bound[static_cast<std::size_t>(port)]))
            return code;
    }
    return code_ok;
}

AclBinding driver_binding(std::uint32_t type, const std::string& name) {
    AclBinding binding{};
    binding.kind = type;
    copy_text(binding.name[type], sizeof binding.name[type], name);
    return binding;
}

std::vector<Ace>::iterator position(AclList& list, std::uint32_t sequence) {
    return std::ranges::lower_bound(list.entries, sequence, {}, &Ace::sequence);
}

// ---- The saved form ----

void entry_fields(Fields& f, AclList& list, Ace& ace, Chip& chip) {
    ace.type = list.type;
    ace_fields(f, ace, chip);
    AclRecord record{};
    copy_text(record.name, sizeof record.name, list.name);
    record.entry = driver_entry(ace);
    if (f.reading())
        chip.request(entry_create, &record);
}

void list_fields(Fields& f, AclList& list, Chip& chip) {
    f.text("name", list.name, ACL_NAME_LENGTH);
    f.integer("type", list.type, ACL_MAC, ACL_IPV4);
    AclRecord record{};
    copy_text(record.name, sizeof record.name, list.name);
    record.kind = list.type;
    if (f.reading() && chip.request(list_create, &record))
        f.refuse("there is no name, or a list with it already");
    f.list(
        "entries",
        [&](int count) {
            if (count >= 0)
                list.entries.assign(static_cast<std::size_t>(count), Ace{});
            return list.entries.size();
        },
        [&](Fields& inner, std::size_t i) { entry_fields(inner, list, list.entries[i], chip); });
    if (f.reading())
        std::ranges::sort(list.entries, {}, &Ace::sequence);
}

void empty_lists(Chip& chip) {
    chip.change([](ChipState& state) {
        state.acl_lists.clear();
        for (ChipPort& port : state.ports)
            port.acl_names = {};
        for (ChipL4Range& range : state.l4_ranges)
            range.users = 0;
    });
}

void bind_on_chip(
    Fields& f, Chip& chip, std::size_t port, std::uint32_t type, const std::string& name) {
    AclRecord record{};
    record.kind = type;
    record.binding = driver_binding(type, name);
    record.ports.words[port / 32] = 1u << (port % 32);
    if (!name.empty() && chip.request(list_bind, &record))
        f.refuse("there is no list \"" + name + "\" to bind");
}

// ---- The trace ----

std::string show_entry(const Ace* ace) { return ace ? show_ace(*ace) : "null"; }

std::string show_bound(const AclPortBinding* binding) {
    if (!binding)
        return "null";
    return is_type(binding->type) ? show(binding->name[binding->type]) : "no type";
}

} // namespace

AclList* Acl::find(const std::string& name) {
    auto list = std::ranges::find(lists, name, &AclList::name);
    return list == lists.end() ? nullptr : &*list;
}

std::size_t Acl::count(std::uint32_t type) const {
    return static_cast<std::size_t>(std::ranges::count(lists, type, &AclList::type));
}

std::size_t Acl::entries(std::uint32_t type) const {
    std::size_t sum = 0;
    for (const AclList& list : lists)
        sum += list.type == type ? list.entries.size() : 0;
    return sum;
}

void Acl::hardware(Fields& f) {
    f.integer("lists", list_capacity, 0, 1000);
    f.integer("entries", entry_capacity, 0, 10000);
}

void Acl::config(Fields& f, Chip& chip) {
    f.list(
        "lists",
        [&](int size) {
            if (size >= 0) {
                empty_lists(chip);
                lists.assign(static_cast<std::size_t>(size), AclList{});
            }
            return lists.size();
        },
        [&](Fields& inner, std::size_t i) { list_fields(inner, lists[i], chip); });
    f.list(
        "bound",
        [&](int size) {
            if (size > static_cast<int>(bound.size()))
                f.refuse("bound has more elements than there are ports");
            return bound.size();
        },
        [&](Fields& inner, std::size_t port) {
            if (port >= bound.size())
                return;
            inner.text("mac", bound[port][ACL_MAC], ACL_NAME_LENGTH);
            inner.text("ipv4", bound[port][ACL_IPV4], ACL_NAME_LENGTH);
            for (std::uint32_t type : {ACL_MAC, ACL_IPV4})
                if (inner.reading())
                    bind_on_chip(inner, chip, port, type, bound[port][type]);
        });
}

} // namespace sim

using namespace sim;

int sal_acl_entry_create(const char* name, uint32_t type) {
    return call(
        "sal_acl_entry_create",
        [&](Switch& s) -> int {
            if (int code = check_name(name))
                return code;
            if (!is_type(type))
                return code_bad_value;
            if (s.acl.find(name))
                return code_exists;
            if (s.acl.count(type) >= s.acl.list_capacity)
                return code_table_full;
            if (int code = rsd_acl_entry_create(name, type))
                return code;
            s.acl.lists.push_back({name, type, {}});
            return code_ok;
        },
        name, type);
}

int sal_acl_entry_del(const char* name, uint32_t type) {
    return call(
        "sal_acl_entry_del",
        [&](Switch& s) -> int {
            AclList* list = list_of(s, name, type);
            if (!list)
                return code_not_found;
            if (is_bound(s, *list))
                return code_busy;
            if (int code = rsd_acl_entry_del(name, type))
                return code;
            s.acl.lists.erase(s.acl.lists.begin() + (list - s.acl.lists.data()));
            return code_ok;
        },
        name, type);
}

int sal_acl_entry_countByType_get(uint32_t type, uint32_t* count) {
    return call(
        "sal_acl_entry_countByType_get",
        [&](Switch& s) -> int {
            if (!is_type(type))
                return code_bad_value;
            *count = static_cast<uint32_t>(s.acl.count(type));
            return code_ok;
        },
        type);
}

int sal_acl_entry_nameByIdx_get(char* name, uint32_t type, uint32_t index) {
    return call(
        "sal_acl_entry_nameByIdx_get",
        [&](Switch& s) -> int {
            uint32_t left = index;
            for (const AclList& list : s.acl.lists)
                if (list.type == type && left-- == 0) {
                    copy_text(name, ACL_NAME_LENGTH + 1, list.name);
                    return code_ok;
                }
            return code_not_found;
        },
        type, index);
}

int sal_acl_entry_typeByName_get(const char* name, uint32_t* type) {
    return call(
        "sal_acl_entry_typeByName_get",
        [&](Switch& s) -> int {
            const AclList* list = name ? s.acl.find(name) : nullptr;
            if (!list)
                return code_not_found;
            *type = list->type;
            return code_ok;
        },
        name);
}

int sal_acl_entry_portBinding_get(AclPortBinding* table) {
    return call("sal_acl_entry_portBinding_get", [&](Switch& s) {
        for (std::size_t port = 0; port < s.acl.bound.size(); ++port) {
            table[port] = {};
            for (std::size_t type : {ACL_MAC, ACL_IPV4})
                copy_text(
                    table[port].name[type], sizeof table[port].name[type], s.acl.bound[port][type]);
        }
        return code_ok;
    });
}

int sal_acl_entry_bind(const AclPortBinding* binding, PortBitmap ports) {
    return call(
        "sal_acl_entry_bind",
        [&](Switch& s) -> int {
            if (!binding || !is_type(binding->type))
                return code_bad_value;
            std::string name = binding->name[binding->type];
            const AclList* list = list_of(s, name.c_str(), binding->type);
            if (!list)
                return code_not_found;
            if (list->entries.empty())
                return code_empty;
            int refused = each_port(s, ports, [&](auto& bound) -> int {
                return bound[binding->type].empty() ? code_ok : code_busy;
            });
            if (refused)
                return refused;
            const AclBinding written = driver_binding(binding->type, name);
            if (int code = rsd_acl_entry_bind(&written, &ports))
                return code;
            return each_port(s, ports, [&](auto& bound) {
                bound[binding->type] = name;
                return code_ok;
            });
        },
        show_bound(binding), binding ? binding->type : 0, ports);
}

int sal_acl_entry_unbind(uint32_t type, PortBitmap ports) {
    return call(
        "sal_acl_entry_unbind",
        [&](Switch& s) -> int {
            if (!is_type(type))
                return code_bad_value;
            if (int code = each_port(s, ports, [](auto&) { return code_ok; }))
                return code;
            if (int code = rsd_acl_entry_unbind(type, &ports))
                return code;
            return each_port(s, ports, [&](auto& bound) {
                bound[type].clear();
                return code_ok;
            });
        },
        type, ports);
}

int _ace_number_check(uint32_t type) {
    return call(
        "_ace_number_check",
        [&](Switch& s) -> int {
            if (!is_type(type))
                return code_bad_value;
            return s.acl.entries(type) < s.acl.entry_capacity ? code_ok : -1;
        },
        type);
}

int sal_ace_entry_create(const char* name, const Ace* entry) {
    return call(
        "sal_ace_entry_create",
        [&](Switch& s) -> int {
            AclList* list = name ? s.acl.find(name) : nullptr;
            if (!list)
                return code_not_found;
            if (is_bound(s, *list))
                return code_busy;
            if (!sound(*entry, list->type))
                return code_bad_value;
            auto place = position(*list, entry->sequence);
            if (place != list->entries.end() && place->sequence == entry->sequence)
                return code_exists;
            if (s.acl.entries(list->type) >= s.acl.entry_capacity)
                return code_table_full;
            AclEntry written = driver_entry(*entry);
            if (int code = rsd_acl_ace_entry_create(name, &written))
                return code;
            list->entries.insert(place, *entry);
            return code_ok;
        },
        name, show_entry(entry));
}

int sal_ace_entry_del(const char* name, uint32_t sequence) {
    return call(
        "sal_ace_entry_del",
        [&](Switch& s) -> int {
            AclList* list = name ? s.acl.find(name) : nullptr;
            if (!list)
                return code_not_found;
            if (is_bound(s, *list))
                return code_busy;
            auto place = position(*list, sequence);
            if (place == list->entries.end() || place->sequence != sequence)
                return code_not_found;
            if (int code = rsd_acl_ace_entry_del(name, sequence))
                return code;
            list->entries.erase(place);
            return code_ok;
        },
        name, sequence);
}

int sal_ace_entry_count_get(const char* name, uint32_t type, uint32_t* count) {
    return call(
        "sal_ace_entry_count_get",
        [&](Switch& s) -> int {
            const AclList* list = list_of(s, name, type);
            if (!list)
                return code_not_found;
            *count = static_cast<uint32_t>(list->entries.size());
            return code_ok;
        },
        name, type);
}

int sal_ace_entry_byIdx_get(const char* name, uint32_t type, uint32_t index, Ace* entry) {
    return call(
        "sal_ace_entry_byIdx_get",
        [&](Switch& s) -> int {
            const AclList* list = list_of(s, name, type);
            if (!list || index >= list->entries.size())
                return code_not_found;
            *entry = list->entries[index];
            return code_ok;
        },
        name, type, index);
}

int sal_acl_l4port_range_get(uint8_t index, uint32_t* kind, uint32_t* first, uint32_t* last) {
    return call(
        "sal_acl_l4port_range_get",
        [&](Switch&) -> int {
            AclPortRange range;
            if (int code = rsd_acl_l4port_range_get(&range, index))
                return code;
            *kind = range.kind;
            *first = range.first;
            *last = range.last;
            return code_ok;
        },
        static_cast<unsigned>(index));
}
