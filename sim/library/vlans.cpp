// Platform library: VLANs.
#include "sim/library/vlans.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

#include "platform/vlan.h"
#include "sim/library/call.h"

namespace sim {

namespace {

bool has_vlan(const VlanMask& vlans, int vid) { return vlans.words[vid / 32] >> (vid % 32) & 1; }

void add_vlan(VlanMask& vlans, int vid) { vlans.words[vid / 32] |= 1u << (vid % 32); }

std::string mask_text(const VlanMask& vlans) {
    std::string text;
    for (int vid = 0; vid < VLAN_COUNT; ++vid) {
        if (!has_vlan(vlans, vid))
            continue;
        int last = vid;
        while (last + 1 < VLAN_COUNT && has_vlan(vlans, last + 1))
            ++last;
        text += (text.empty() ? "" : ",") + std::to_string(vid);
        if (last > vid)
            text += "-" + std::to_string(last);
        vid = last;
    }
    return text;
}

bool number(std::string_view text, int& value) {
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() && value >= 0 &&
           value < VLAN_COUNT && text.front() != '-';
}

bool add_range(std::string_view text, VlanMask& vlans) {
    std::size_t dash = text.find('-');
    int first = 0;
    int last = 0;
    if (text.empty() || !number(text.substr(0, dash), first))
        return false;
    if (dash == text.npos)
        last = first;
    else if (dash + 1 == text.size() || !number(text.substr(dash + 1), last) || last < first)
        return false;
    for (int vid = first; vid <= last; ++vid)
        add_vlan(vlans, vid);
    return true;
}

bool parse_mask(std::string_view text, VlanMask& vlans) {
    vlans = {};
    while (!text.empty()) {
        std::size_t comma = text.find(',');
        if (!add_range(text.substr(0, comma), vlans))
            return false;
        if (comma == text.npos)
            return true;
        text.remove_prefix(comma + 1);
        if (text.empty())
            return false;
    }
    return true;
}

void fill(VlanEntry& entry, const Vlan& vlan) {
    entry = {};
    for (int i = 0; i < PORT_BITMAP_WORDS; ++i) {
        entry.members.words[i] = vlan.tagged.words[i] | vlan.untagged.words[i];
        entry.untagged.words[i] = vlan.untagged.words[i];
    }
    copy_text(entry.name, sizeof entry.name, vlan.name);
}

} // namespace

bool has_bit(const PortBitmap& ports, int port) {
    return ports.words[port / 32] >> (port % 32) & 1;
}

void set_bit(PortBitmap& ports, int port, bool on) {
    std::uint32_t bit = 1u << (port % 32);
    std::uint32_t& word = ports.words[port / 32];
    word = on ? word | bit : word & ~bit;
}

Vlans::Vlans(int logical_ports) : pvid(static_cast<std::size_t>(logical_ports), default_vid) {
    Vlan& first = table[default_vid];
    first.name = "default";
    for (int port = 0; port < logical_ports && port < PORT_BITMAP_WORDS * 32; ++port)
        set_bit(first.untagged, port, true);
}

void Vlans::hardware(Fields& f) { f.integer("capacity", capacity, 1, VLAN_LAST); }

void Vlans::config(Fields& f) {
    struct Row {
        int vid = 0;
        Vlan vlan;
        void fields(Fields& f) {
            f.integer("id", vid, VLAN_FIRST, VLAN_LAST);
            f.text("name", vlan.name, VLAN_NAME_SIZE - 1);
            f.bits("tagged", vlan.tagged.words, PORT_BITMAP_WORDS);
            f.bits("untagged", vlan.untagged.words, PORT_BITMAP_WORDS);
        }
    };
    std::vector<Row> rows;
    for (auto& [vid, vlan] : table)
        rows.push_back({vid, vlan});
    f.list("entries", rows, VLAN_LAST);
    f.integer("management", management, VLAN_FIRST, VLAN_LAST);
    f.list(
        "pvid", [&](int) { return pvid.size(); },
        [&](Fields& element, std::size_t i) {
            if (i < pvid.size())
                element.integer("vid", pvid[i], VLAN_FIRST, VLAN_LAST);
        });
    if (!f.reading())
        return;
    table.clear();
    for (const Row& row : rows)
        table[row.vid] = row.vlan;
    if (!has(default_vid) || !has(management))
        f.refuse("the default VLAN and the management VLAN must be there");
}

} // namespace sim

using namespace sim;

int sal_vlan_portAdminPvid_get(int port, uint32_t* vid) {
    return call(
        "sal_vlan_portAdminPvid_get",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            *vid = static_cast<uint32_t>(s.vlans.pvid[static_cast<std::size_t>(port)]);
            return code_ok;
        },
        port);
}

int sal_vlan_portAdminPvid_set(int port, int vid) {
    return call(
        "sal_vlan_portAdminPvid_set",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            if (!s.vlans.has(vid))
                return code_no_vlan;
            s.vlans.pvid[static_cast<std::size_t>(port)] = vid;
            return code_ok;
        },
        port, vid);
}

int sal_vlan_portAdminVlanmask_get(int port, int kind, VlanMask* vlans) {
    return call(
        "sal_vlan_portAdminVlanmask_get",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            if (kind != VLAN_TAGGED && kind != VLAN_UNTAGGED)
                return code_bad_value;
            *vlans = {};
            for (const auto& [vid, vlan] : s.vlans.table)
                if (has_bit(kind == VLAN_TAGGED ? vlan.tagged : vlan.untagged, port))
                    add_vlan(*vlans, vid);
            return code_ok;
        },
        port, kind);
}

int sal_vlan_portAdminVlanmask_add(int port, int kind, const VlanMask* vlans) {
    return call(
        "sal_vlan_portAdminVlanmask_add",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            if (kind != VLAN_NOT_MEMBER && kind != VLAN_TAGGED && kind != VLAN_UNTAGGED)
                return code_bad_value;
            for (int vid = 0; vid < VLAN_COUNT; ++vid)
                if (has_vlan(*vlans, vid) && !s.vlans.has(vid))
                    return code_no_vlan;
            for (auto& [vid, vlan] : s.vlans.table) {
                if (!has_vlan(*vlans, vid))
                    continue;
                set_bit(vlan.tagged, port, kind == VLAN_TAGGED);
                set_bit(vlan.untagged, port, kind == VLAN_UNTAGGED);
            }
            return code_ok;
        },
        port, kind, *vlans);
}

int sal_vlan_adminEntryExist_ret(int vid) {
    return value(
        "sal_vlan_adminEntryExist_ret", [&](Switch& s) { return s.vlans.has(vid) ? 1 : 0; }, vid);
}

int sal_vlan_adminEntryExist_get(VlanMask* vlans) {
    return call("sal_vlan_adminEntryExist_get", [&](Switch& s) {
        *vlans = {};
        for (const auto& row : s.vlans.table)
            add_vlan(*vlans, row.first);
        return code_ok;
    });
}

int sal_vlan_adminEntry_get(int vid, VlanEntry* entry) {
    return call(
        "sal_vlan_adminEntry_get",
        [&](Switch& s) -> int {
            auto at = s.vlans.table.find(vid);
            if (at == s.vlans.table.end())
                return code_no_vlan;
            fill(*entry, at->second);
            return code_ok;
        },
        vid);
}

int sal_vlan_operEntryNum_get(uint32_t* count) {
    return call("sal_vlan_operEntryNum_get", [&](Switch& s) {
        *count = static_cast<uint32_t>(s.vlans.table.size());
        return code_ok;
    });
}

int sal_vlan_adminEntrySort_get(int index, uint32_t* vid, VlanEntry* entry) {
    return call(
        "sal_vlan_adminEntrySort_get",
        [&](Switch& s) -> int {
            if (index < 0 || index >= static_cast<int>(s.vlans.table.size()))
                return code_not_found;
            auto at = std::next(s.vlans.table.begin(), index);
            *vid = static_cast<uint32_t>(at->first);
            fill(*entry, at->second);
            return code_ok;
        },
        index);
}

int sal_vlan_adminEntry_create(int vid, const char* name) {
    return call(
        "sal_vlan_adminEntry_create",
        [&](Switch& s) -> int {
            if (vid < VLAN_FIRST || vid > VLAN_LAST)
                return code_bad_value;
            if (std::strlen(name) >= VLAN_NAME_SIZE)
                return code_too_long;
            if (s.vlans.has(vid))
                return code_exists;
            if (static_cast<int>(s.vlans.table.size()) >= s.vlans.capacity)
                return code_table_full;
            s.vlans.table[vid].name = name;
            return code_ok;
        },
        vid, name);
}

int sal_vlan_adminEntry_destroy(int vid) {
    return call(
        "sal_vlan_adminEntry_destroy",
        [&](Switch& s) -> int {
            if (!s.vlans.has(vid))
                return code_no_vlan;
            if (vid == Vlans::default_vid || vid == s.vlans.management)
                return code_busy;
            s.vlans.table.erase(vid);
            std::replace(s.vlans.pvid.begin(), s.vlans.pvid.end(), vid, Vlans::default_vid);
            return code_ok;
        },
        vid);
}

int sal_vlan_nameStr_get(int vid, const char* prefix, char* name) {
    return call(
        "sal_vlan_nameStr_get",
        [&](Switch&) -> int {
            if (vid < VLAN_FIRST || vid > VLAN_LAST)
                return code_bad_value;
            std::string digits = std::to_string(vid);
            std::string zeros(4 - digits.size(), '0');
            copy_text(name, VLAN_NAME_SIZE, prefix + zeros + digits);
            return code_ok;
        },
        vid, prefix);
}

int sal_vlan_mgmtVid_get(uint32_t* vid) {
    return call("sal_vlan_mgmtVid_get", [&](Switch& s) {
        *vid = static_cast<uint32_t>(s.vlans.management);
        return code_ok;
    });
}

int sys_util_vlanmask2Str(const VlanMask* vlans, char* text) {
    return call(
        "sys_util_vlanmask2Str",
        [&](Switch&) {
            copy_text(text, VLAN_TEXT_SIZE, mask_text(*vlans));
            return code_ok;
        },
        *vlans);
}

int sys_util_str2Vlanmask(const char* text, VlanMask* vlans) {
    return call(
        "sys_util_str2Vlanmask",
        [&](Switch&) -> int {
            VlanMask parsed;
            if (!text || !parse_mask(text, parsed))
                return code_bad_text;
            *vlans = parsed;
            return code_ok;
        },
        text);
}
