// Writing a call as a trace shows it.
#include "judge/show.h"

#include <cstdio>
#include <cstring>

namespace judge {

namespace {

bool has_bit(const std::uint32_t* words, int bit) { return words[bit / 32] >> (bit % 32) & 1; }

std::string braced(const std::string& text) { return "{" + text + "}"; }

template <class Number> std::string number(Number value) { return std::to_string(value); }

} // namespace

std::string show_bits(const std::uint32_t* words, int count) {
    std::string text;
    for (int bit = 0; bit < count; ++bit) {
        if (!has_bit(words, bit))
            continue;
        int last = bit;
        while (last + 1 < count && has_bit(words, last + 1))
            ++last;
        text += (text.empty() ? "" : ",") + number(bit) + (last > bit ? "-" + number(last) : "");
        bit = last;
    }
    return braced(text);
}

std::string show_text(const char* text) {
    if (!text)
        return "null";
    std::string shown = "\"";
    for (; *text; ++text) {
        char byte[8];
        bool plain = *text >= ' ' && *text <= '~' && *text != '"' && *text != '\\';
        std::snprintf(byte, sizeof byte, plain ? "%c" : "\\x%02X", *text & 0xFF);
        shown += byte;
    }
    return shown + "\"";
}

std::string show_mac(const std::uint8_t* mac) {
    char text[18];
    std::snprintf(
        text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4],
        mac[5]);
    return text;
}

std::string show(const MacEntry* entry) {
    return show_mac(entry->mac) + " VLAN " + number(entry->vlan);
}

std::string show(const Ace* entry) {
    return braced(
        "sequence " + number(entry->sequence) + ", action " + number(entry->action) + ", type " +
        number(entry->type));
}

std::string show(const AclPortBinding* binding) {
    bool known = binding->type == ACL_MAC || binding->type == ACL_IPV4;
    return braced(
        (known ? std::string(binding->name[binding->type]) + ", " : "") + "type " +
        number(binding->type));
}

std::string show(const McastVlan* record) {
    return braced(
        "vlan " + number(record->vid) + ", family " + number(record->family) + ", enable " +
        number(record->enable) + ", fast leave " + number(record->fast_leave));
}

std::string show(const SnmpCommunity* community) {
    return braced(std::string(community->name) + ", right " + number(community->right));
}

std::string show(const SnmpAccess* access) {
    return braced(
        std::string(access->group) + ", model " + number(access->model) + ", read " +
        access->read_view + ", write " + access->write_view);
}

std::string show(const SnmpTarget* target) {
    return braced(
        std::string(target->host) + ", version " + number(target->version) + ", type " +
        number(target->type) + ", community " + target->community + ", udp " + number(target->udp) +
        ", timeout " + number(target->timeout) + ", retry " + number(target->retry));
}

std::string show(const VoiceVlanOui* entry) {
    char text[48];
    const std::uint8_t* o = entry->oui;
    const std::uint8_t* m = entry->mask;
    std::snprintf(
        text, sizeof text, "%02X:%02X:%02X/%02X:%02X:%02X %s", o[0], o[1], o[2], m[0], m[1], m[2],
        entry->in_use ? "used" : "free");
    return text;
}

} // namespace judge
