// Lists are put into the platform and the chip alike, as a start of the switch does.
#include "tests/sections/acl/support.h"

#include <algorithm>

#include "driver/acl.h"
#include "sections/acl/lists.h"
#include "sim/library/call.h"

void copy_lists_to_chip(sim::Board& on) {
    const sim::InsideLibrary unseen;
    on.device.chip.change([](sim::ChipState& chip) {
        chip.acl_lists.clear();
        for (sim::ChipPort& port : chip.ports)
            port.acl_names = {};
    });
    for (const sim::AclList& list : on.device.acl.lists) {
        EXPECT_EQ(rsd_acl_entry_create(list.name.c_str(), list.type), 0);
        for (const Ace& ace : list.entries) {
            const AclEntry entry = sim::driver_entry(ace);
            EXPECT_EQ(rsd_acl_ace_entry_create(list.name.c_str(), &entry), 0);
        }
    }
}

void OnBoardWithLists::put_list(
    sim::Board& on, const std::string& name, std::uint32_t type, int entries) {
    sim::AclList list{name, type, {}};
    for (int sequence = 1; sequence <= entries; ++sequence) {
        Ace ace{};
        ace.sequence = static_cast<std::uint32_t>(sequence);
        ace.action = 1;
        ace.type = type;
        if (type == ACL_IPV4)
            ace.match.ipv4.action_valid = 1;
        list.entries.push_back(ace);
    }
    on.device.acl.lists.push_back(list);
    copy_lists_to_chip(on);
}

Lines OnBoardWithLists::entries(const std::string& list) {
    Lines shown;
    if (const sim::AclList* found = device.acl.find(list))
        for (const Ace& ace : found->entries)
            shown.push_back(sim::show_ace(ace));
    return shown;
}

int OnBoardWithLists::set(const std::string& acl) {
    Json document(acl);
    return vxc_acl_set(document);
}

Lines OnBoardWithLists::writes() const {
    Lines lines = trace();
    std::erase_if(lines, [](const std::string& line) {
        std::string name = line.substr(0, line.find('('));
        return name.ends_with("_get") || name.starts_with("sys_util") ||
               name == "_ace_number_check";
    });
    return lines;
}

namespace {

std::string with_members(const std::string& first, const std::string& members) {
    return first + (members.empty() ? "" : "," + members);
}

} // namespace

int OnBoardWithEntries::apply_all(const std::string& items) {
    Json document(items);
    return setter_(document);
}

int OnBoardWithEntries::apply(const std::string& members) {
    return apply_all("[{" + with_members(R"("acl_name":"A")", members) + "}]");
}

int OnBoardWithEntries::create(const std::string& members, int sequence) {
    std::string first = R"("method":1,"action":1,"sequence":)" + std::to_string(sequence);
    return apply(with_members(first, members));
}

int OnBoardWithEntries::modify(const std::string& members, int sequence) {
    std::string first = R"("method":2,"sequence":)" + std::to_string(sequence);
    return apply(with_members(first, members));
}

void OnBoardWithEntries::start_with(const std::string& members) {
    forget();
    device.acl.lists.clear();
    put_list("A", type_, 0);
    create(members);
    ASSERT_EQ(recorded(), Codes{}) << members;
    forget();
}

std::string OnBoardWithEntries::entry() {
    Lines all = entries("A");
    return all.empty() ? "none" : all.back();
}

void expect_outcomes(const std::vector<FailedRun>& runs, const std::vector<OutcomeOf>& outcomes) {
    for (const FailedRun& run : runs) {
        std::string numbered = run.call + "#" + std::to_string(run.nth);
        auto outcome = std::ranges::find(outcomes, numbered, &OutcomeOf::call);
        if (outcome == outcomes.end())
            outcome = std::ranges::find(outcomes, run.call, &OutcomeOf::call);
        if (outcome == outcomes.end()) {
            ADD_FAILURE() << "no outcome is written down for " << numbered;
            continue;
        }
        EXPECT_EQ(run.result, outcome->outcome.result) << numbered;
        EXPECT_EQ(run.errors, outcome->outcome.errors) << numbered;
        EXPECT_EQ(run.calls_after.empty(), outcome->outcome.ends) << numbered;
    }
}
