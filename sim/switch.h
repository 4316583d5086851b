// The simulated switch: one member a family of the platform library. `config` is what a save writes
// to the startup configuration, `hardware` what only a scenario sets: what is plugged in, and
// where.
#pragma once

#include "sim/access.h"
#include "sim/acl.h"
#include "sim/chip.h"
#include "sim/clock.h"
#include "sim/cloud_store.h"
#include "sim/diag.h"
#include "sim/fields.h"
#include "sim/firmware.h"
#include "sim/igmp.h"
#include "sim/leds.h"
#include "sim/lldp.h"
#include "sim/mac_table.h"
#include "sim/mirror.h"
#include "sim/network.h"
#include "sim/poe.h"
#include "sim/ports.h"
#include "sim/qos.h"
#include "sim/rates.h"
#include "sim/snmp.h"
#include "sim/stp.h"
#include "sim/system.h"
#include "sim/trunks.h"
#include "sim/vlans.h"
#include "sim/voice_vlan.h"

namespace sim {

struct Switch {
    explicit Switch(int logical_ports = 28)
        : chip(logical_ports), ports(chip), mirrors(chip), trunks(chip), vlans(logical_ports),
          rates(logical_ports), qos(logical_ports), voice_vlan(logical_ports), acl(logical_ports) {}

    int logical_ports() const { return chip.ports(); }
    bool has_port(int port) const { return port >= 0 && port < logical_ports(); }

    Chip chip;
    double counted_until = 0;  // running time up to which the chip's counters have grown
    bool driver_loaded = true; // "/dev/ski" exists
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
