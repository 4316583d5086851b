// See acl_support.h.
#include "acl_support.h"

#include <algorithm>

#include "sections/acl.h"

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
