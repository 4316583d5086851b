// Platform library: MAC addresses. A free place of the static table holds what was there before,
// and one that was never used what the flash holds then; only the flag tells.
#include "sim/library/mac_table.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/l2.h"
#include "sim/library/call.h"

namespace sim {

namespace {

bool same_address(const MacAddress& address, const MacEntry& entry) {
    return !address.freed && std::memcmp(address.mac, entry.mac, sizeof entry.mac) == 0 &&
           address.vlan == entry.vlan;
}

void fill(MacEntry& entry, const MacAddress& address, std::uint32_t flags) {
    entry = {};
    entry.ports = address.ports;
    std::memcpy(entry.mac, address.mac, sizeof entry.mac);
    entry.vlan = static_cast<std::uint16_t>(address.vlan);
    entry.flags = flags;
}

// A place of the flash that was never written: ones, but for the flag and the ports.
void fill_unwritten(MacEntry& entry) {
    entry = {};
    std::memset(entry.mac, 0xFF, sizeof entry.mac);
    entry.vlan = 0xFFFF;
    entry.flags = ~std::uint32_t{MAC_ENTRY_IN_USE};
}

} // namespace

// What answers behind the ports that have link on a switch as it comes.
MacTable::MacTable()
    : learned{
          {{0x02, 0xAA, 0, 0, 0, 0x01}, 1, {{1u << 0, 0, 0}}, true},
          {{0x02, 0xAA, 0, 0, 0, 0x02}, 1, {{1u << 1, 0, 0}}, true},
          {{0x02, 0xAA, 0, 0, 0, 0x03}, 1, {{1u << 4, 0, 0}}, true},
          {{0x02, 0xAA, 0, 0, 0, 0x04}, 1, {{1u << 7, 0, 0}}, true}} {}

void MacAddress::fields(Fields& f) {
    f.mac("mac", mac);
    f.integer("vlan", vlan, 1, 4094);
    f.bits("ports", ports.words, PORT_BITMAP_WORDS);
    f.boolean("learned", learned);
}

void MacTable::config(Fields& f) {
    if (!f.reading())
        std::erase_if(fixed, [](const MacAddress& address) { return address.freed; });
    f.list("static", fixed, STATIC_MAC_ENTRIES);
}

void MacTable::hardware(Fields& f) { f.list("learned", learned, MAC_TABLE_ENTRIES); }

} // namespace sim

using namespace sim;

int sal_l2_macTbl_generate(uint32_t* count) {
    return call("sal_l2_macTbl_generate", [&](Switch& s) {
        MacTable& macs = s.macs;
        macs.snapshot = macs.learned;
        std::ranges::copy_if(
            macs.fixed, std::back_inserter(macs.snapshot),
            [](const MacAddress& address) { return !address.freed; });
        if (macs.snapshot.size() > MAC_TABLE_ENTRIES)
            macs.snapshot.resize(MAC_TABLE_ENTRIES);
        *count = static_cast<uint32_t>(macs.snapshot.size());
        return code_ok;
    });
}

int sal_l2_macTbl_size_get(uint32_t* count) {
    return call("sal_l2_macTbl_size_get", [&](Switch& s) {
        *count = static_cast<uint32_t>(s.macs.snapshot.size());
        return code_ok;
    });
}

int sal_l2_macEntry_get(uint32_t index, MacEntry* entry) {
    return call(
        "sal_l2_macEntry_get",
        [&](Switch& s) -> int {
            if (index >= s.macs.snapshot.size())
                return code_not_found;
            const MacAddress& address = s.macs.snapshot[index];
            fill(*entry, address, address.learned ? 0 : MAC_ENTRY_NOT_LEARNED);
            return code_ok;
        },
        index);
}

int sal_l2_static_macEntry_search(const MacEntry* entry, uint32_t* is_static) {
    return call(
        "sal_l2_static_macEntry_search",
        [&](Switch& s) {
            const auto& fixed = s.macs.fixed;
            *is_static = std::any_of(fixed.begin(), fixed.end(), [&](const MacAddress& address) {
                return same_address(address, *entry);
            });
            return code_ok;
        },
        show_mac(entry->mac));
}

int sal_l2_static_macEntry_get(uint32_t index, MacEntry* entry) {
    return call(
        "sal_l2_static_macEntry_get",
        [&](Switch& s) -> int {
            if (index >= STATIC_MAC_ENTRIES)
                return code_bad_value;
            if (index < s.macs.fixed.size())
                fill(*entry, s.macs.fixed[index], s.macs.fixed[index].freed ? 0 : MAC_ENTRY_IN_USE);
            else
                fill_unwritten(*entry);
            return code_ok;
        },
        index);
}

int sal_l2_static_macEntry_del(const MacEntry* entry) {
    return call(
        "sal_l2_static_macEntry_del",
        [&](Switch& s) -> int {
            auto& fixed = s.macs.fixed;
            auto at = std::find_if(fixed.begin(), fixed.end(), [&](const MacAddress& address) {
                return same_address(address, *entry);
            });
            if (at == fixed.end())
                return code_not_found;
            at->freed = true;
            return code_ok;
        },
        show_mac(entry->mac));
}
