// How a call reads in a finding, as it stands in a trace of the simulated switch: inputs only,
// numbers in decimal, texts in quotes, sets as {1,3-5}.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "platform/acl.h"
#include "platform/igmp.h"
#include "platform/l2.h"
#include "platform/snmp.h"
#include "platform/types.h"
#include "platform/voice_vlan.h"

namespace judge {

std::string show_bits(const std::uint32_t* words, int count);
std::string show_text(const char* text); // in quotes, with what is not printable as \xNN
std::string show_mac(const std::uint8_t* mac);

inline std::string show(const char* text) { return show_text(text); }
inline std::string show(const PortBitmap& ports) {
    return show_bits(ports.words, PORT_BITMAP_WORDS * 32);
}
inline std::string show(const PortBitmap* ports) { return show(*ports); }
inline std::string show(const VlanMask* vlans) {
    return show_bits(vlans->words, VLAN_MASK_WORDS * 32);
}
inline std::string show(const std::uint8_t* mac) { return show_mac(mac); }
std::string show(const MacEntry* entry);
std::string show(const Ace* entry);
std::string show(const AclPortBinding* binding);
std::string show(const McastVlan* record);
std::string show(const SnmpCommunity* community);
std::string show(const SnmpAccess* access);
std::string show(const SnmpTarget* target);
std::string show(const VoiceVlanOui* entry);
inline std::string show(const std::uint32_t*) { return "words"; }

template <class Number>
std::enable_if_t<std::is_arithmetic<Number>::value, std::string> show(Number number) {
    return std::to_string(number);
}

// An output is a pointer to what is not const; it is left out.
template <class Argument> struct IsOutput : std::false_type {};
template <class Pointee>
struct IsOutput<Pointee*> : std::integral_constant<bool, !std::is_const<Pointee>::value> {};

template <class Argument> void add_argument(std::string& line, const Argument& argument) {
    if constexpr (!IsOutput<Argument>::value)
        line += (line.back() == '(' ? "" : ", ") + show(argument);
}

template <class... Arguments>
std::string show_call(const char* name, const Arguments&... arguments) {
    std::string line = std::string(name) + "(";
    (add_argument(line, arguments), ...);
    return line + ")";
}

} // namespace judge
