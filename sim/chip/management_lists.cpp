// Management access lists of the chip: their names, their rules, and the one in force.
#include <algorithm>

#include "sim/chip/admission.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

using Name = ChipText<ACL_MGMT_NAME_SIZE>;

std::vector<std::string>::iterator position(ChipState& chip, const std::string& name) {
    return std::ranges::find(chip.management.names, name);
}

bool is_list(ChipState& chip, const std::string& name) {
    return position(chip, name) != chip.management.names.end();
}

bool is_in_force(const ChipState& chip, const std::string& name) {
    return chip.management.in_force && management_name(chip.management.in_force->name) == name;
}

// --- Lists.

int add_list(ChipState& chip, OrderedEntry<Name>& record) {
    const std::string name = management_name(record.entry.text);
    if (name.empty())
        return code_bad_value;
    if (is_list(chip, name))
        return code_exists;
    chip.management.names.push_back(name);
    return code_ok;
}

int del_list(ChipState& chip, OrderedEntry<Name>& record) {
    const std::string name = management_name(record.entry.text);
    if (!is_list(chip, name))
        return code_not_found;
    if (is_in_force(chip, name))
        return code_busy;
    chip.management.names.erase(position(chip, name));
    chip.management.rules.remove_if(
        [&](const AclMgmtEntry& rule) { return management_name(rule.name) == name; });
    return code_ok;
}

int count_lists(ChipState& chip, ChipWords& words) {
    words.word[0] = static_cast<std::uint32_t>(chip.management.names.size());
    return code_ok;
}

int get_name(ChipState& chip, OrderedEntry<Name>& record) {
    const std::uint32_t place = record.words.word[0];
    if (place >= chip.management.names.size())
        return code_not_found;
    record.entry = {};
    chip.management.names[place].copy(record.entry.text, ACL_MGMT_NAME_SIZE - 1);
    return code_ok;
}

// --- Rules.

// A rule brings its list along.
int add_rule(ChipState& chip, OrderedEntry<AclMgmtEntry>& record) {
    const std::string name = management_name(record.entry.name);
    if (name.empty())
        return code_bad_value;
    if (chip.management.rules.find(record.entry))
        return code_exists;
    if (int code = chip.management.rules.put(record.entry))
        return code;
    if (!is_list(chip, name))
        chip.management.names.push_back(name);
    return code_ok;
}

int del_rule(ChipState& chip, OrderedEntry<AclMgmtEntry>& record) {
    return chip.management.rules.remove(record.entry);
}

int get_rule(ChipState& chip, OrderedEntry<AclMgmtEntry>& record) {
    return hand_out(chip.management.rules.find(record.entry), record.entry);
}

int count_rules(ChipState& chip, OrderedEntry<AclMgmtCount>& record) {
    const std::string name = management_name(record.entry.name);
    if (!is_list(chip, name))
        return code_not_found;
    record.entry.rules = chip.management.rules.count_if(
        [&](const AclMgmtEntry& rule) { return management_name(rule.name) == name; });
    return code_ok;
}

int count_all_rules(ChipState& chip, ChipWords& words) {
    words.word[0] = static_cast<std::uint32_t>(chip.management.rules.size());
    return code_ok;
}

// --- The list in force.

int put_in_force(ChipState& chip, OrderedEntry<AclMgmtClass>& record) {
    if (!is_list(chip, management_name(record.entry.name)))
        return code_not_found;
    chip.management.in_force = record.entry;
    return code_ok;
}

int take_out_of_force(ChipState& chip, OrderedEntry<AclMgmtClass>& record) {
    if (!is_in_force(chip, management_name(record.entry.name)))
        return code_not_found;
    chip.management.in_force.reset();
    return code_ok;
}

int get_in_force(ChipState& chip, OrderedEntry<AclMgmtClass>& record) {
    const auto& in_force = chip.management.in_force;
    return hand_out(in_force ? &*in_force : nullptr, record.entry);
}

constexpr ChipHandler handlers[] = {
    handler<add_list>(2817),        handler<del_list>(2818),     handler<add_rule>(2819),
    handler<del_rule>(2820),        handler<put_in_force>(2821), handler<take_out_of_force>(2822),
    handler<count_lists>(2881),     handler<get_name>(2882),     handler<count_rules>(2883),
    handler<count_all_rules>(2884), handler<get_rule>(2885),     handler<get_in_force>(2886),
};

} // namespace

std::span<const ChipHandler> management_list_handlers() { return handlers; }

} // namespace sim
