// The simulated switch: one member a family of the platform library. `config` is what a save writes
// to the startup configuration, `hardware` what only a scenario sets: what is plugged in, and
// where.
#pragma once

#include "sim/chip/chip.h"
#include "sim/instruments/clock.h"
#include "sim/instruments/fields.h"
#include "sim/library/access.h"
#include "sim/library/acl.h"
#include "sim/library/cloud_store.h"
#include "sim/library/diag.h"
#include "sim/library/firmware.h"
#include "sim/library/igmp.h"
#include "sim/library/leds.h"
#include "sim/library/lldp.h"
#include "sim/library/mac_table.h"
#include "sim/library/mirror.h"
#include "sim/library/network.h"
#include "sim/library/poe.h"
#include "sim/library/ports.h"
#include "sim/library/qos.h"
#include "sim/library/rates.h"
#include "sim/library/snmp.h"
#include "sim/library/stp.h"
#include "sim/library/system.h"
#include "sim/library/trunks.h"
#include "sim/library/vlans.h"
#include "sim/library/voice_vlan.h"

namespace sim {

struct Switch {
    explicit Switch(int logical_ports = 28)
        : chip(logical_ports), ports(chip), mirrors(chip), trunks(chip), vlans(logical_ports),
          rates(logical_ports), qos(logical_ports), voice_vlan(logical_ports), acl(logical_ports) {}

    int logical_ports() const { return chip.ports(); }
    bool has_port(int port) const { return port >= 0 && port < logical_ports(); }

    Chip chip;
    double counted_until = 0;       // running time up to which the chip's counters have grown
    bool driver_loaded = true;      // "/dev/ski" exists
    std::int64_t clock_ahead_s = 0; // of the right time, when the switch is powered on
    CloudStore cloud;
    System system;
    Firmware firmware;
    Ports ports;
    Mirrors mirrors;
    Trunks trunks;
    Poe poe;
    Vlans vlans;
    MacTable macs;
    Rates rates;
    Qos qos;
    VoiceVlan voice_vlan;
    Lldp lldp;
    Acl acl;
    Diag diag;
    Leds leds;
    Network network;
    Snmp snmp;
    Stp stp;
    Igmp igmp;
    Access access;

    void hardware(Fields& f);
    void config(Fields& f);
    // What a restart of the agent alone does not change.
    void running(Fields& f, Clock& clock);
};

} // namespace sim
