// The SNMP agent of the switch's firmware.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/snmp.h"
#include "sim/instruments/fields.h"

namespace sim {

struct Community {
    std::string name; // empty: a free slot, as with the other slots below
    int right = SNMP_READ_ONLY;
    bool internal = false;

    void fields(Fields& f);
};

struct CommunityGroup {
    std::string community;
    int model = 0;
    std::string group;

    void fields(Fields& f);
};

struct GroupAccess {
    std::string group;
    int model = 0;
    std::string read_view;
    std::string write_view;

    void fields(Fields& f);
};

struct View {
    std::string name;
    std::string subtree;
    bool included = true;

    void fields(Fields& f);
};

struct Target {
    std::string host;
    int version = 0;
    int type = 0;
    std::string community;
    int udp = 162;
    int timeout = 15;
    int retry = 3;

    void fields(Fields& f);
};

struct Event {
    bool active = false;
    std::string community;
    std::string description;

    void fields(Fields& f);
};

struct Snmp {
    Snmp();

    bool enable = false;
    bool running = false;
    std::array<Community, SNMP_COMMUNITIES> communities;
    std::vector<CommunityGroup> groups;
    std::vector<GroupAccess> accesses;
    std::array<View, 8> views;
    std::array<Target, SNMP_TARGETS> targets;
    std::array<Event, SNMP_RMON_EVENTS> events;

    // A community with all that belongs to it.
    void add_community(const std::string& name, int right);

    void config(Fields& f);
};

} // namespace sim
