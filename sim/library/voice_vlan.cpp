// Platform library: the voice VLAN.
#include "sim/library/voice_vlan.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "sim/library/call.h"

namespace sim {

namespace {

constexpr int shortest_aging = 30; // minutes
constexpr int longest_aging = 65536;
constexpr std::size_t longest_description = VOICE_VLAN_DESCRIPTION_SIZE - 1;

bool within(int value, int low, int high) { return value >= low && value <= high; }

std::string show_oui(const VoiceVlanOui& entry) {
    char text[48];
    const std::uint8_t* o = entry.oui;
    const std::uint8_t* m = entry.mask;
    std::snprintf(
        text, sizeof text, "%02X:%02X:%02X/%02X:%02X:%02X %s", o[0], o[1], o[2], m[0], m[1], m[2],
        entry.in_use ? "used" : "free");
    return text;
}

void store(VoiceOui& place, const VoiceVlanOui& entry, const char* description) {
    std::memcpy(place.address, entry.oui, OUI_SIZE);
    std::memcpy(place.mask, entry.mask, OUI_SIZE);
    place.description = description;
    place.in_use = entry.in_use != 0;
}

int check(const VoiceVlanOui* entry, const char* description) {
    if (!entry || !description)
        return code_null;
    return std::strlen(description) > longest_description ? code_too_long : code_ok;
}

// A setting of one port, for the two that it has.
template <class Member> int port_set(Switch& s, int port, Member VoicePort::*member, int value) {
    if (!s.has_port(port))
        return code_no_port;
    if (!within(value, 0, 1))
        return code_bad_value;
    s.voice_vlan.ports[static_cast<std::size_t>(port)].*member = static_cast<Member>(value);
    return code_ok;
}

template <class Member> int port_get(Switch& s, int port, Member VoicePort::*member, int* value) {
    if (!s.has_port(port))
        return code_no_port;
    *value = s.voice_vlan.ports[static_cast<std::size_t>(port)].*member;
    return code_ok;
}

} // namespace

void VoiceOui::fields(Fields& f) {
    f.boolean("in_use", in_use);
    f.mac("address", address);
    f.mac("mask", mask);
    f.text("description", description, longest_description);
}

void VoicePort::fields(Fields& f) {
    f.boolean("enable", enable);
    f.integer("cos_mode", cos_mode, 0, 1);
}

void VoiceVlan::fields(Fields& f) {
    f.integer("mode", mode, 0, 2);
    f.integer("vid", vid, 1, VOICE_VLAN_NO_VID);
    f.boolean("remark", remark);
    f.integer("queue", qos.queue, 0, 7);
    f.integer("dscp", qos.dscp, 0, 63);
    f.integer("remark_cos", qos.remark_cos, 0, 7);
    f.integer("aging", aging, shortest_aging, longest_aging);
    f.slots("oui", ouis);
    f.slots("ports", ports);
}

} // namespace sim

using namespace sim;

int sal_vlan_voiceVlanState_set(int mode) {
    return call(
        "sal_vlan_voiceVlanState_set",
        [&](Switch& s) -> int {
            if (!within(mode, 0, 2))
                return code_bad_value;
            if (mode != VOICE_VLAN_OFF && s.voice_vlan.vid == VOICE_VLAN_NO_VID)
                return code_no_vlan;
            s.voice_vlan.mode = mode;
            return code_ok;
        },
        mode);
}

int sal_vlan_voiceVlanState_get(int* mode) {
    return call("sal_vlan_voiceVlanState_get", [&](Switch& s) {
        *mode = s.voice_vlan.mode;
        return code_ok;
    });
}

int sal_vlan_voiceVid_set(int vid) {
    return call(
        "sal_vlan_voiceVid_set",
        [&](Switch& s) -> int {
            if (!within(vid, 1, VOICE_VLAN_NO_VID))
                return code_bad_value;
            if (vid == VOICE_VLAN_NO_VID && s.voice_vlan.mode != VOICE_VLAN_OFF)
                return code_busy;
            s.voice_vlan.vid = vid;
            return code_ok;
        },
        vid);
}

int sal_vlan_voiceVid_get(int* vid) {
    return call("sal_vlan_voiceVid_get", [&](Switch& s) {
        *vid = s.voice_vlan.vid;
        return code_ok;
    });
}

int sal_vlan_voiceVlan1pRemarkEnable_set(int enable) {
    return call(
        "sal_vlan_voiceVlan1pRemarkEnable_set",
        [&](Switch& s) -> int {
            if (!within(enable, 0, 1))
                return code_bad_value;
            s.voice_vlan.remark = enable == 1;
            return code_ok;
        },
        enable);
}

int sal_vlan_voiceVlan1pRemarkEnable_get(int* enable) {
    return call("sal_vlan_voiceVlan1pRemarkEnable_get", [&](Switch& s) {
        *enable = s.voice_vlan.remark;
        return code_ok;
    });
}

int sal_vlan_voiceVlanQos_set(int queue, int dscp, int remark_cos) {
    return call(
        "sal_vlan_voiceVlanQos_set",
        [&](Switch& s) -> int {
            if (!within(queue, 0, 7) || !within(dscp, 0, 63) || !within(remark_cos, 0, 7))
                return code_bad_value;
            s.voice_vlan.qos = {queue, dscp, remark_cos};
            return code_ok;
        },
        queue, dscp, remark_cos);
}

int sal_vlan_voiceVlanQos_get(VoiceVlanQos* qos) {
    return call("sal_vlan_voiceVlanQos_get", [&](Switch& s) {
        *qos = s.voice_vlan.qos;
        return code_ok;
    });
}

int sal_vlan_voiceVlanAging_set(int minutes) {
    return call(
        "sal_vlan_voiceVlanAging_set",
        [&](Switch& s) -> int {
            if (!within(minutes, shortest_aging, longest_aging))
                return code_bad_value;
            s.voice_vlan.aging = minutes;
            return code_ok;
        },
        minutes);
}

int sal_vlan_voiceVlanAging_get(int* minutes) {
    return call("sal_vlan_voiceVlanAging_get", [&](Switch& s) {
        *minutes = s.voice_vlan.aging;
        return code_ok;
    });
}

int sal_vlan_portVoiceVlanEnable_set(int port, int enable) {
    return call(
        "sal_vlan_portVoiceVlanEnable_set",
        [&](Switch& s) { return port_set(s, port, &VoicePort::enable, enable); }, port, enable);
}

int sal_vlan_portVoiceVlanEnable_get(int port, int* enable) {
    return call(
        "sal_vlan_portVoiceVlanEnable_get",
        [&](Switch& s) { return port_get(s, port, &VoicePort::enable, enable); }, port);
}

int sal_vlan_portVoiceVlancosMode_set(int port, int mode) {
    return call(
        "sal_vlan_portVoiceVlancosMode_set",
        [&](Switch& s) { return port_set(s, port, &VoicePort::cos_mode, mode); }, port, mode);
}

int sal_vlan_portVoiceVlancosMode_get(int port, int* mode) {
    return call(
        "sal_vlan_portVoiceVlancosMode_get",
        [&](Switch& s) { return port_get(s, port, &VoicePort::cos_mode, mode); }, port);
}

int sal_vlan_voiceVlanOui_get(int index, VoiceVlanOui* entry, char* description) {
    return call(
        "sal_vlan_voiceVlanOui_get",
        [&](Switch& s) -> int {
            if (!within(index, 0, VOICE_VLAN_OUIS - 1))
                return code_bad_value;
            const VoiceOui& place = s.voice_vlan.ouis[static_cast<std::size_t>(index)];
            *entry = {};
            std::memcpy(entry->oui, place.address, OUI_SIZE);
            std::memcpy(entry->mask, place.mask, OUI_SIZE);
            entry->in_use = place.in_use;
            copy_text(description, VOICE_VLAN_DESCRIPTION_SIZE, place.description);
            return code_ok;
        },
        index);
}

int sal_vlan_voiceVlanOui_set(int index, const VoiceVlanOui* entry, const char* description) {
    return call(
        "sal_vlan_voiceVlanOui_set",
        [&](Switch& s) -> int {
            if (!within(index, 0, VOICE_VLAN_OUIS - 1))
                return code_bad_value;
            if (int code = check(entry, description))
                return code;
            store(s.voice_vlan.ouis[static_cast<std::size_t>(index)], *entry, description);
            return code_ok;
        },
        index, entry ? show_oui(*entry) : "null", description);
}

int sal_vlan_voiceVlanOui_add(const VoiceVlanOui* entry, const char* description) {
    return call(
        "sal_vlan_voiceVlanOui_add",
        [&](Switch& s) -> int {
            if (int code = check(entry, description))
                return code;
            auto& ouis = s.voice_vlan.ouis;
            auto free = std::ranges::find(ouis, false, &VoiceOui::in_use);
            if (free == ouis.end())
                return code_table_full;
            store(*free, *entry, description);
            return code_ok;
        },
        entry ? show_oui(*entry) : "null", description);
}
