// Access lists of the chip: lists, their entries, and the ports that they are bound to.
#include <algorithm>
#include <cstring>

#include "driver/acl.h"
#include "sim/chip/handlers.h"

namespace sim {

std::map<ChipAclEntry, std::vector<std::size_t>> ChipState::acl_ranges() const {
    std::map<ChipAclEntry, std::vector<std::size_t>> ranges;
    for (const ChipAclList& list : acl_lists)
        for (const auto& [sequence, entry] : list.entries) {
            if (entry.valid & ACL_VALID_SOURCE_RANGE)
                ranges[{list.name, sequence}].push_back(entry.source_range);
            if (entry.valid & ACL_VALID_DESTINATION_RANGE)
                ranges[{list.name, sequence}].push_back(entry.destination_range);
        }
    return ranges;
}

namespace {

constexpr std::uint32_t filter_engine_entries = 1024;

bool is_kind(std::uint32_t kind) { return kind >= 1 && kind < ACL_BINDING_KINDS; }

std::string text_of(const char (&name)[ACL_NAME_SIZE]) {
    return {name, strnlen(name, ACL_NAME_SIZE)};
}

std::vector<ChipAclList>::iterator position(ChipState& chip, const std::string& name) {
    return std::ranges::find(chip.acl_lists, name, &ChipAclList::name);
}

// Null when there is no such list.
ChipAclList* list_named(ChipState& chip, const std::string& name) {
    auto at = position(chip, name);
    return at == chip.acl_lists.end() ? nullptr : &*at;
}

ChipAclList* list_of_kind(ChipState& chip, const AclRecord& record) {
    ChipAclList* list = list_named(chip, text_of(record.name));
    return list && list->kind == record.kind ? list : nullptr;
}

bool is_bound(const ChipState& chip, const ChipAclList& list) {
    return std::ranges::any_of(
        chip.ports, [&](const ChipPort& port) { return port.acl_names[list.kind] == list.name; });
}

// --- Lists.

int create_list(ChipState& chip, AclRecord& record) {
    const std::string name = text_of(record.name);
    if (!is_kind(record.kind) || name.empty())
        return code_bad_value;
    if (list_named(chip, name))
        return code_exists;
    chip.acl_lists.push_back({name, record.kind, {}});
    return code_ok;
}

void count_range_users(ChipState& chip) {
    for (ChipL4Range& range : chip.l4_ranges)
        range.users = 0;
    for (const auto& [entry, ranges] : chip.acl_ranges())
        for (std::size_t range : ranges)
            ++chip.l4_ranges[range].users;
}

int del_list(ChipState& chip, AclRecord& record) {
    const ChipAclList* list = list_of_kind(chip, record);
    if (!list)
        return code_not_found;
    if (is_bound(chip, *list))
        return code_busy;
    chip.acl_lists.erase(position(chip, list->name));
    count_range_users(chip);
    return code_ok;
}

int count_lists(ChipState& chip, AclRecord& record) {
    if (!is_kind(record.kind))
        return code_bad_value;
    record.count = static_cast<std::uint32_t>(
        std::ranges::count(chip.acl_lists, record.kind, &ChipAclList::kind));
    return code_ok;
}

int get_name(ChipState& chip, AclRecord& record) {
    std::uint32_t left = record.index;
    for (const ChipAclList& list : chip.acl_lists)
        if (list.kind == record.kind && left-- == 0) {
            std::memset(record.name, 0, sizeof record.name);
            list.name.copy(record.name, ACL_NAME_SIZE - 1);
            return code_ok;
        }
    return code_not_found;
}

int get_kind(ChipState& chip, AclRecord& record) {
    const ChipAclList* list = list_named(chip, text_of(record.name));
    if (!list)
        return code_not_found;
    record.kind = list->kind;
    return code_ok;
}

// --- Bindings.

int bind_ports(ChipState& chip, const PortBitmap& ports, std::uint32_t kind, const char* name) {
    for (std::size_t port = chip.ports.size(); port < 32 * std::size(ports.words); ++port)
        if (holds(ports.words, port))
            return code_no_port;
    for (std::size_t port = 0; port < chip.ports.size(); ++port)
        if (holds(ports.words, port))
            chip.ports[port].acl_names[kind] = name;
    return code_ok;
}

int bind_list(ChipState& chip, AclRecord& record) {
    const std::uint32_t kind = record.binding.kind;
    if (!is_kind(kind))
        return code_bad_value;
    const ChipAclList* list = list_named(chip, text_of(record.binding.name[kind]));
    if (!list || list->kind != kind)
        return code_not_found;
    return bind_ports(chip, record.ports, kind, list->name.c_str());
}

int unbind_list(ChipState& chip, AclRecord& record) {
    return is_kind(record.kind) ? bind_ports(chip, record.ports, record.kind, "")
                                : int{code_bad_value};
}

int get_binding(ChipState& chip, AclRecord& record) {
    const ChipPort* port = port_at(chip, record.port);
    if (!port)
        return code_no_port;
    record.binding = {};
    for (std::size_t kind = 0; kind < ACL_BINDING_KINDS; ++kind)
        port->acl_names[kind].copy(record.binding.name[kind], ACL_NAME_SIZE - 1);
    return code_ok;
}

// --- Entries.

bool refers_to_a_free_range(ChipState& chip, const AclEntry& entry) {
    return ((entry.valid & ACL_VALID_SOURCE_RANGE) && !l4_range_at(chip, entry.source_range)) ||
           ((entry.valid & ACL_VALID_DESTINATION_RANGE) &&
            !l4_range_at(chip, entry.destination_range));
}

int write_entry(ChipState& chip, const AclRecord& record, bool is_new) {
    ChipAclList* list = list_named(chip, text_of(record.name));
    if (!list)
        return code_not_found;
    if (list->entries.contains(record.entry.sequence) == is_new)
        return is_new ? code_exists : code_not_found;
    if (refers_to_a_free_range(chip, record.entry))
        return code_bad_value;
    list->entries[record.entry.sequence] = record.entry;
    count_range_users(chip);
    return code_ok;
}

int create_entry(ChipState& chip, AclRecord& record) { return write_entry(chip, record, true); }
int modify_entry(ChipState& chip, AclRecord& record) { return write_entry(chip, record, false); }

int del_entry(ChipState& chip, AclRecord& record) {
    ChipAclList* list = list_named(chip, text_of(record.name));
    if (!list || list->entries.erase(record.sequence) == 0)
        return code_not_found;
    count_range_users(chip);
    return code_ok;
}

int count_entries(ChipState& chip, AclRecord& record) {
    const ChipAclList* list = list_of_kind(chip, record);
    if (!list)
        return code_not_found;
    record.count = static_cast<std::uint32_t>(list->entries.size());
    return code_ok;
}

int get_entry(ChipState& chip, AclRecord& record) {
    const ChipAclList* list = list_of_kind(chip, record);
    if (!list || record.index >= list->entries.size())
        return code_not_found;
    record.entry = std::next(list->entries.begin(), record.index)->second;
    return code_ok;
}

// The engine holds the entries of lists that are bound.
int get_usage(ChipState& chip, AclRecord& record) {
    record.usage = {0, filter_engine_entries};
    for (const ChipAclList& list : chip.acl_lists)
        if (is_bound(chip, list))
            record.usage.used += static_cast<std::uint32_t>(list.entries.size());
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<create_list>(257), handler<del_list>(258),     handler<bind_list>(259),
    handler<unbind_list>(260), handler<create_entry>(261), handler<modify_entry>(262),
    handler<del_entry>(263),   handler<count_lists>(321),  handler<get_name>(322),
    handler<get_kind>(323),    handler<get_binding>(324),  handler<count_entries>(325),
    handler<get_entry>(326),   handler<get_usage>(329),
};

} // namespace

std::span<const ChipHandler> access_list_handlers() { return handlers; }

} // namespace sim
