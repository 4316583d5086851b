// The MAC address table and the table of static addresses.
#include "platform/l2.h"

#include <cstring>
#include <set>

#include "judge/changes.h"
#include "judge/family.h"
#include "judge/ports.h"

namespace judge {

namespace {

std::string fault_of(const MacEntry& entry) {
    if (entry.flags & MAC_ENTRY_IN_USE && (entry.vlan < 1 || entry.vlan > 4094))
        return outside("vlan", entry.vlan, 1, 4094);
    return all_below(entry.ports, port_count()) ? "" : "a port that the switch does not have";
}

Operations reads() {
    return {
        {NAMED(sal_l2_static_macEntry_get),
         {within("index", 0, STATIC_MAC_ENTRIES - 1), gives_record<MacEntry>("entry", fault_of)}},
    };
}

std::vector<MacEntry> static_entries() {
    std::vector<MacEntry> entries;
    for (std::uint32_t index = 0; index < STATIC_MAC_ENTRIES; ++index) {
        MacEntry entry = {};
        if (sal_l2_static_macEntry_get(index, &entry) == 0 && entry.flags & MAC_ENTRY_IN_USE)
            entries.push_back(entry);
    }
    return entries;
}

bool same_address(const MacEntry& a, const MacEntry& b) {
    return a.vlan == b.vlan && std::memcmp(a.mac, b.mac, sizeof a.mac) == 0;
}

void judge_search(const std::vector<MacEntry>& fixed, const MacEntry& entry) {
    bool expected = false;
    for (const MacEntry& one : fixed)
        expected = expected || same_address(one, entry);
    std::uint32_t found = 0xA5A5A5A5;
    if (!bench->works(
            ASK(sal_l2_static_macEntry_search, &entry, &found), "an entry's address is looked up"))
        return;
    bench->holds(found <= 1, reason::out_of_range, "static (1) or not (0)", std::to_string(found));
    bench->holds(
        (found == 1) == expected, reason::disagrees, "whether the entry's address is a static one",
        std::to_string(found) + (expected ? ", though it is in the static table"
                                          : ", though it is not in the static table"));
}

// Entry `index`, twice: the snapshot keeps its order. A live table changes, the snapshot does not.
bool read_entry(std::uint32_t index, MacEntry& entry) {
    Guarded buffer(sizeof(MacEntry));
    Guarded again(sizeof(MacEntry));
    int code = ASK(sal_l2_macEntry_get, index, buffer.as<MacEntry>());
    if (!bench->works(code, "an entry of the snapshot"))
        return false;
    bench->holds(
        buffer.overrun() == 0, reason::overrun, "an entry is 32 bytes",
        std::to_string(buffer.overrun()) + " bytes outside it were written");
    entry = *buffer.as<MacEntry>();
    if (!bench->holds(
            !buffer.untouched(), reason::not_written, "an entry", "code 0, and nothing written"))
        return false;
    bench->holds(
        fault_of(entry).empty() && entry.vlan >= 1 && entry.vlan <= 4094, reason::out_of_range,
        "ports of the switch, and a VLAN", fault_of(entry) + " VLAN " + std::to_string(entry.vlan));
    ASK(sal_l2_macEntry_get, index, again.as<MacEntry>());
    bench->holds(
        buffer.bytes() == again.bytes(), reason::not_repeated,
        "a snapshot stays as it was taken until the next", "another entry");
    return true;
}

void judge_end(std::uint32_t count) {
    for (std::uint32_t wrong : {count, count + 1, UINT32_MAX}) {
        Guarded buffer(sizeof(MacEntry));
        if (bench->refuses(
                ASK(sal_l2_macEntry_get, wrong, buffer.as<MacEntry>()), "0 up to its size"))
            bench->holds(
                buffer.untouched(), reason::touched, "a failing call leaves its outputs unchanged",
                "the entry was written");
    }
}

void judge_count(std::uint32_t count, std::uint32_t size) {
    bench->holds(
        count == size, reason::disagrees, "both tell its number of entries",
        std::to_string(count) + " generated, " + std::to_string(size) + " of size");
    bench->holds(
        count <= MAC_TABLE_ENTRIES, reason::out_of_range, "at most 16384 entries",
        std::to_string(count));
}

void judge_snapshot() {
    std::uint32_t count = 0xA5A5A5A5;
    std::uint32_t size = 0x5A5A5A5A;
    if (!bench->works(ASK(sal_l2_macTbl_generate, &count), "takes a snapshot") ||
        !bench->works(ASK(sal_l2_macTbl_size_get, &size), "its number of entries"))
        return;
    judge_count(count, size);
    std::vector<MacEntry> fixed = static_entries();
    std::set<std::string> seen;
    for (std::uint32_t index = 0; index < size && index < MAC_TABLE_ENTRIES; ++index) {
        MacEntry entry = {};
        if (!read_entry(index, entry))
            continue;
        std::string address = show(&entry);
        bench->holds(
            seen.insert(address).second, reason::disagrees, "an address is in a VLAN once",
            address + " again");
        judge_search(fixed, entry);
    }
    judge_end(size);
    for (const MacEntry& entry : fixed)
        judge_search(fixed, entry);
    judge_search(fixed, {{}, {0x02, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE}, 4094, {}, 0});
}

// An address that no place has cannot be taken out.
void changes() {
    const MacEntry none = {{}, {0x02, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE}, 4094, {}, 0};
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_l2_static_macEntry_del, &none), "takes the entry with that address out");
    });
}

} // namespace

const Family l2_family = {"l2", reads, judge_snapshot, nullptr, changes};

} // namespace judge
