// The voice VLAN: its settings, the table of telephone vendors, and its switches at the ports.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/voice_vlan.h"
#include "sim/instruments/fields.h"

namespace sim {

struct VoiceOui {
    std::uint8_t address[6] = {}; // the OUI is its first half
    std::uint8_t mask[6] = {0xFF, 0xFF, 0xFF, 0, 0, 0};
    std::string description;
    bool in_use = false;

    void fields(Fields& f);
};

struct VoicePort {
    bool enable = false;
    int cos_mode = 0;

    void fields(Fields& f);
};

struct VoiceVlan {
    explicit VoiceVlan(int logical_ports) : ports(static_cast<std::size_t>(logical_ports)) {}

    int mode = VOICE_VLAN_OFF;
    int vid = VOICE_VLAN_NO_VID;
    bool remark = false;
    VoiceVlanQos qos = {6, 46, 6};
    int aging = 1440; // minutes
    std::array<VoiceOui, VOICE_VLAN_OUIS> ouis;
    std::vector<VoicePort> ports; // by logical port

    void fields(Fields& f);
};

} // namespace sim
