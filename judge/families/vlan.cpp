// VLANs and the ports' membership in them.
#include "platform/vlan.h"

#include <cstring>

#include "judge/changes.h"
#include "judge/family.h"
#include "judge/ports.h"

namespace judge {

namespace {

std::string fault_of(const VlanEntry& entry) {
    if (!is_part(entry.untagged, entry.members))
        return "an untagged port is no member";
    if (!all_below(entry.members, port_count()))
        return "a member is no port";
    return unterminated("name", entry.name, sizeof entry.name);
}

const Parameter kind = asked(
    "kind", "2 tagged, 3 untagged",
    [] {
        return Numbers{VLAN_TAGGED, VLAN_UNTAGGED};
    },
    [] {
        return Numbers{-1, 4, INT32_MAX};
    });

std::string mask_fault(const VlanMask& vlans) {
    return has(vlans, 0) || has(vlans, VLAN_COUNT - 1) ? "0 or 4095 is in it" : "";
}

std::uint32_t vlan_count() {
    std::uint32_t count = 0;
    return sal_vlan_operEntryNum_get(&count) == 0 && count <= VLAN_LAST ? count : 0;
}

// The first and the last places, and those beside them.
const Parameter place = asked(
    "index", "0 up to the number of VLANs",
    [] { return vlan_count() ? spread(0, vlan_count() - 1) : Numbers(); },
    [] {
        return Numbers{-1, vlan_count(), INT32_MAX};
    });

Operations reads() {
    return {
        {NAMED(sal_vlan_portAdminPvid_get), {port, gives_number("vid", VLAN_FIRST, VLAN_LAST)}},
        {NAMED(sal_vlan_portAdminVlanmask_get),
         {port, kind, gives_record<VlanMask>("vlans", mask_fault)}},
        {NAMED(sal_vlan_adminEntryExist_ret),
         {within("vid", VLAN_FIRST, VLAN_LAST)},
         flag("exists")},
        {NAMED(sal_vlan_adminEntryExist_get), {gives_record<VlanMask>("vlans", mask_fault)}},
        {NAMED(sal_vlan_adminEntry_get), {vlan, gives_record<VlanEntry>("entry", fault_of)}},
        {NAMED(sal_vlan_operEntryNum_get), {gives_number("count", 1, VLAN_LAST)}},
        {NAMED(sal_vlan_adminEntrySort_get),
         {place, gives_number("vid", VLAN_FIRST, VLAN_LAST),
          gives_record<VlanEntry>("entry", fault_of)}},
        {NAMED(sal_vlan_mgmtVid_get), {gives_number("vid", VLAN_FIRST, VLAN_LAST)}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_vlan_portAdminPvid_set), {port}, {vlan}, outputs(sal_vlan_portAdminPvid_get)},
    };
}

// --- What must agree.

void judge_mask(const VlanMask& exist) {
    for (int vid = 0; vid < VLAN_COUNT; ++vid)
        bench->holds(
            has(exist, vid) == (ASK(sal_vlan_adminEntryExist_ret, vid) == 1), reason::disagrees,
            "1 when the VLAN exists",
            std::string("sal_vlan_adminEntryExist_get has ") + (has(exist, vid) ? "" : "not ") +
                "got " + std::to_string(vid));
}

void judge_order(const VlanMask& exist) {
    std::uint32_t last = 0;
    std::uint32_t seen = 0;
    for (std::uint32_t index = 0; index < vlan_count(); ++index) {
        std::uint32_t vid = 0;
        VlanEntry entry = {};
        VlanEntry same = {};
        if (ASK(sal_vlan_adminEntrySort_get, static_cast<int>(index), &vid, &entry) != 0)
            continue;
        bench->holds(
            vid > last, reason::unsorted, "in the order of their ids",
            std::to_string(last) + ", then " + std::to_string(vid));
        last = vid;
        seen += vid < VLAN_COUNT && has(exist, static_cast<int>(vid));
        if (ASK(sal_vlan_adminEntry_get, static_cast<int>(vid), &same) == 0)
            bench->holds(
                std::memcmp(&entry, &same, offsetof(VlanEntry, name)) == 0 &&
                    std::strncmp(entry.name, same.name, sizeof same.name) == 0,
                reason::disagrees, "the VLAN at an index is the one of its id",
                "another entry than at index " + std::to_string(index));
    }
    std::uint32_t in_mask = 0;
    for (int vid = 0; vid < VLAN_COUNT; ++vid)
        in_mask += has(exist, vid);
    bench->holds(
        seen == in_mask && vlan_count() == in_mask, reason::disagrees, "the number of VLANs",
        std::to_string(in_mask) + " exist, " + std::to_string(vlan_count()) + " are counted, " +
            std::to_string(seen) + " are listed");
}

void judge_membership(const VlanMask& exist, int p, int how) {
    VlanMask vlans = {};
    if (ASK(sal_vlan_portAdminVlanmask_get, p, how, &vlans) != 0)
        return;
    std::string asked_by = Bench::last();
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid) {
        VlanEntry entry = {};
        if (!has(exist, vid) || ASK(sal_vlan_adminEntry_get, vid, &entry) != 0)
            continue;
        bool untagged = has(entry.untagged, p);
        bool in_entry = how == VLAN_UNTAGGED ? untagged : has(entry.members, p) && !untagged;
        bench->holds(
            has(vlans, vid) == in_entry, reason::disagrees,
            "members are tagged and untagged; untagged is part of members",
            asked_by + (in_entry ? " lacks " : " has ") + std::to_string(vid));
    }
}

void judge_special() {
    std::uint32_t vid = 0;
    if (ASK(sal_vlan_mgmtVid_get, &vid) == 0)
        bench->holds(
            ASK(sal_vlan_adminEntryExist_ret, static_cast<int>(vid)) == 1, reason::disagrees,
            "the management VLAN exists", std::to_string(vid));
    for (int p = 0; p < port_count(); ++p)
        if (ASK(sal_vlan_portAdminPvid_get, p, &vid) == 0)
            bench->holds(
                ASK(sal_vlan_adminEntryExist_ret, static_cast<int>(vid)) == 1, reason::disagrees,
                "the VLAN of untagged frames must exist", std::to_string(vid));
}

// --- Texts.

struct MaskText {
    const char* text;
    std::vector<std::pair<int, int>> runs; // first and last
};

VlanMask mask_of(const MaskText& row) {
    VlanMask vlans = {};
    for (auto [first, last] : row.runs)
        for (int vid = first; vid <= last; ++vid)
            add(vlans, vid);
    return vlans;
}

VlanMask every_other() {
    VlanMask vlans = {};
    for (int vid = 0; vid < VLAN_COUNT; vid += 2)
        add(vlans, vid);
    return vlans;
}

// Writes a mask and reads it again.
std::string written(const VlanMask& vlans) {
    Guarded text(VLAN_TEXT_SIZE);
    bench->works(ASK(sys_util_vlanmask2Str, &vlans, text.text()), "a VLAN mask as text");
    bench->holds(
        text.overrun() == 0, reason::overrun, "the buffer holds VLAN_TEXT_SIZE bytes",
        std::to_string(text.overrun()) + " bytes outside it were written");
    if (!bench->holds(text.terminated(), reason::unterminated, "a text", "no NUL within it"))
        return "";
    return text.text();
}

void judge_text_of(const VlanMask& vlans) {
    std::string text = written(vlans);
    std::string wrote = Bench::last();
    VlanMask read;
    std::memset(&read, 0xFF, sizeof read); // a reader that only adds is found out
    bench->works(ASK(sys_util_str2Vlanmask, text.c_str(), &read), "a VLAN list");
    bench->holds(
        std::memcmp(&read, &vlans, sizeof read) == 0, reason::disagrees, "as text, and back",
        "another mask");
}

void judge_texts() {
    const MaskText rows[] = {
        {"", {}},
        {"1", {{1, 1}}},
        {"1,10-12", {{1, 1}, {10, 12}}},
        {"31-33,4094", {{31, 33}, {4094, 4094}}},
        {"0-4095", {{0, 4095}}},
    };
    for (const MaskText& row : rows) {
        VlanMask vlans = mask_of(row);
        std::string text = written(vlans);
        bench->holds(
            text == row.text, reason::disagrees, std::string("\"") + row.text + "\"",
            show_text(text.c_str()));
        judge_text_of(vlans);
    }
    judge_text_of(every_other());
    for (const char* text : {"x", "1,", "-1", "4096", "3-1", "1-", "1 2", "1;2"}) {
        Guarded vlans(sizeof(VlanMask));
        int code = ASK(sys_util_str2Vlanmask, text, vlans.as<VlanMask>());
        if (bench->refuses(code, "a text that is not a list of ids is refused"))
            bench->holds(
                vlans.untouched(), reason::touched, "a failing call leaves its outputs unchanged",
                "the mask was written");
    }
}

void judge_default_names() {
    for (int vid : {VLAN_FIRST + 0, 42, VLAN_LAST + 0}) {
        Guarded name(VLAN_NAME_SIZE);
        bench->works(ASK(sal_vlan_nameStr_get, vid, "VLAN", name.text()), "the default name");
        bench->holds(
            name.overrun() == 0, reason::overrun, "the buffer holds VLAN_NAME_SIZE bytes",
            std::to_string(name.overrun()) + " bytes outside it were written");
        if (!bench->holds(name.terminated(), reason::unterminated, "a text", "no NUL within it"))
            continue;
        std::string text = name.text();
        std::string digits = std::to_string(vid);
        bool good = text.rfind("VLAN", 0) == 0 && text.size() > digits.size() &&
                    text.compare(text.size() - digits.size(), digits.size(), digits) == 0;
        bench->holds(good, reason::disagrees, "`prefix` and the id", show_text(text.c_str()));
    }
}

void agreement() {
    VlanMask exist = {};
    if (ASK(sal_vlan_adminEntryExist_get, &exist) == 0) {
        judge_mask(exist);
        judge_order(exist);
        for (int p = 0; p < port_count(); ++p)
            for (int how : {VLAN_TAGGED, VLAN_UNTAGGED})
                judge_membership(exist, p, how);
    }
    judge_special();
    judge_texts();
    judge_default_names();
}

// --- Changes, on a VLAN that does not exist.

int free_vlan() {
    for (int vid = VLAN_LAST; vid >= VLAN_FIRST; --vid)
        if (sal_vlan_adminEntryExist_ret(vid) != 1)
            return vid;
    return 0;
}

void judge_refusals(int vid) {
    unchanged(reads(), [&] {
        VlanMask none = {};
        add(none, vid);
        for (int how : {VLAN_NOT_MEMBER, VLAN_TAGGED, VLAN_UNTAGGED})
            bench->refuses(
                ASK(sal_vlan_portAdminVlanmask_add, 0, how, &none),
                "refused as a whole when one of the VLANs does not exist");
        bench->refuses(ASK(sal_vlan_adminEntry_destroy, vid), "a VLAN that does not exist");
        bench->refuses(
            ASK(sal_vlan_adminEntry_create, vid, std::string(VLAN_NAME_SIZE, 'n').c_str()),
            "refused when the name is longer than VLAN_NAME_SIZE with its terminator");
        for (int wrong : {-1, 0, VLAN_LAST + 1, VLAN_COUNT + 0})
            bench->refuses(
                ASK(sal_vlan_adminEntry_create, wrong, "judge"), "a VLAN id is 1 to 4094");
        std::uint32_t management = 0;
        if (ASK(sal_vlan_mgmtVid_get, &management) == 0)
            bench->refuses(
                ASK(sal_vlan_adminEntry_destroy, static_cast<int>(management)),
                "refused for the management VLAN");
    });
}

bool is_member(int p, int vid, int how) {
    VlanMask vlans = {};
    return ASK(sal_vlan_portAdminVlanmask_get, p, how, &vlans) == 0 && has(vlans, vid);
}

void judge_joining(int p, int vid) {
    VlanMask one = {};
    add(one, vid);
    struct Step {
        int how;
        bool tagged, untagged;
    };
    for (Step step :
         {Step{VLAN_TAGGED, true, false}, Step{VLAN_UNTAGGED, false, true},
          Step{VLAN_NOT_MEMBER, false, false}}) {
        bench->works(
            ASK(sal_vlan_portAdminVlanmask_add, p, step.how, &one),
            "a port becomes a member, and leaves again");
        std::string call = Bench::last();
        bool stored = is_member(p, vid, VLAN_TAGGED) == step.tagged &&
                      is_member(p, vid, VLAN_UNTAGGED) == step.untagged;
        bench->count_case();
        if (!stored)
            bench->convict(
                reason::not_stored, call, "the port is a member in that way",
                "sal_vlan_portAdminVlanmask_get gives another");
    }
    unchanged(reads(), [&] {
        bench->refuses(ASK(sal_vlan_portAdminVlanmask_add, p, 4, &one), "kinds are 0, 2 and 3");
        bench->refuses(
            ASK(sal_vlan_portAdminVlanmask_add, port_count(), VLAN_TAGGED + 0, &one),
            "a zero-based logical port");
        for (int absent : {VLAN_FIRST - 1, VLAN_LAST + 1}) {
            VlanMask two = one;
            add(two, absent);
            bench->refuses(
                ASK(sal_vlan_portAdminVlanmask_add, p, VLAN_TAGGED + 0, &two),
                "refused as a whole when one of the VLANs does not exist");
        }
    });
}

void judge_creation(int vid) {
    const std::string name(VLAN_NAME_SIZE - 1, 'j'); // the longest
    Undo undo("sal_vlan_adminEntry_destroy", {std::to_string(vid)});
    if (!bench->works(ASK(sal_vlan_adminEntry_create, vid, name.c_str()), "creates a VLAN"))
        return;
    VlanEntry entry = {};
    int code = ASK(sal_vlan_adminEntry_get, vid, &entry);
    bench->holds(
        code == 0 && std::strncmp(entry.name, name.c_str(), sizeof entry.name) == 0 &&
            size(entry.members) == 0,
        reason::not_stored, "a VLAN of that name without members",
        code ? "code " + std::to_string(code) : std::to_string(size(entry.members)) + " members");
    agreement();
    judge_joining(0, vid);
    judge_joining(port_count() - 1, vid);
    unchanged(reads(), [&] {
        bench->refuses(ASK(sal_vlan_adminEntry_create, vid, "again"), "refused when it exists");
    });
    bench->works(ASK(sal_vlan_adminEntry_destroy, vid), "a VLAN is destroyed");
    bench->holds(
        ASK(sal_vlan_adminEntryExist_ret, vid) == 0, reason::not_stored, "a VLAN is destroyed",
        "it exists");
}

void changes() {
    int vid = free_vlan();
    if (!vid)
        return bench->remark("all VLANs exist: creating one is not judged");
    judge_refusals(vid);
    back_as_before(reads(), [&] { judge_creation(vid); });
}

} // namespace

const Family vlan_family = {"vlan", reads, agreement, settings, changes};

} // namespace judge
