// The Link Layer Discovery Protocol.
#include "platform/lldp.h"

#include <cstring>

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

enum { LONGEST_TIME_TO_LIVE = 65535 };

const Parameter interval = within("seconds", 5, 32767);
const Parameter multiplier = within("multiplier", 2, 10);
const Parameter reinit = within("seconds", 1, 10);
const Parameter delay = within("seconds", 1, 8192);

std::string fault_of(const LldpNeighbour& neighbour) {
    if (!neighbour.chassis_id[0])
        return "";
    if (neighbour.local_port >= static_cast<std::uint32_t>(port_count()))
        return "local_port is " + std::to_string(neighbour.local_port);
    std::string fault =
        outside("auto_negotiation_supported", neighbour.auto_negotiation_supported, 0, 1);
    return fault.empty()
               ? outside("auto_negotiation_enabled", neighbour.auto_negotiation_enabled, 0, 1)
               : fault;
}

Operations reads() {
    Parameter neighbour = varying(gives_record<LldpNeighbour>("neighbour", fault_of));
    neighbour.may_stay = true; // of a free place
    return {
        {NAMED(sal_lldp_enable_get), {gives_flag("enable")}},
        {NAMED(sal_lldp_tx_interval_get), {gives_number("seconds", 5, 32767)}},
        {NAMED(sal_lldp_holdtime_get), {gives(multiplier)}},
        {NAMED(sal_lldp_reinit_delay_get), {gives(reinit)}},
        {NAMED(sal_lldp_tx_delay_get), {gives_number("seconds", 1, 8192)}},
        {NAMED(sal_lldp_portRemoteEntryInfo_get),
         {physical_port, within("index", 0, LLDP_PORT_NEIGHBOURS - 1), neighbour}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_lldp_enable_set), {}, {flag("enable")}, outputs(sal_lldp_enable_get)},
        Setting(NAMED(sal_lldp_tx_interval_set), {}, {interval}, outputs(sal_lldp_tx_interval_get))
            .unless_refused(),
        Setting(NAMED(sal_lldp_holdtime_set), {}, {multiplier}, outputs(sal_lldp_holdtime_get))
            .unless_refused(),
        {NAMED(sal_lldp_reinit_delay_set), {}, {reinit}, outputs(sal_lldp_reinit_delay_get)},
        Setting(NAMED(sal_lldp_tx_delay_set), {}, {delay}, outputs(sal_lldp_tx_delay_get))
            .unless_refused(),
        {NAMED(sal_lldp_disableAction_set), {}, {within("action", 0, 2)}, nullptr},
    };
}

struct Timers {
    std::uint32_t interval = 0;
    std::uint8_t multiplier = 0;
    std::uint16_t delay = 0;
};

bool read(Timers& timers) {
    return ASK(sal_lldp_tx_interval_get, &timers.interval) == 0 &&
           ASK(sal_lldp_holdtime_get, &timers.multiplier) == 0 &&
           ASK(sal_lldp_tx_delay_get, &timers.delay) == 0;
}

void judge_timers() {
    Timers timers;
    if (!read(timers))
        return;
    bench->holds(
        timers.delay <= timers.interval / 4 &&
            timers.interval * timers.multiplier <= LONGEST_TIME_TO_LIVE,
        reason::disagrees,
        "the delay is no more than a quarter of the interval, the time to live at most 65535",
        "interval " + std::to_string(timers.interval) + ", multiplier " +
            std::to_string(timers.multiplier) + ", delay " + std::to_string(timers.delay));
}

void agreement() {
    judge_timers();
    for (Number p : physical_port.good())
        for (int index = 0; index < LLDP_PORT_NEIGHBOURS; ++index) {
            LldpNeighbour neighbour = {};
            if (ASK(sal_lldp_portRemoteEntryInfo_get, static_cast<int>(p), index, &neighbour) == 0)
                bench->holds(
                    !neighbour.chassis_id[0] || neighbour.local_port == static_cast<uint32_t>(p),
                    reason::disagrees, "the port behind which it is",
                    "local_port is " + std::to_string(neighbour.local_port));
        }
}

// The limits between the timers.
void changes() {
    Timers timers;
    if (!read(timers))
        return;
    Undo restore_delay("sal_lldp_tx_delay_set", {std::to_string(timers.delay)});
    Undo restore_multiplier("sal_lldp_holdtime_set", {std::to_string(timers.multiplier)});
    Undo restore_interval("sal_lldp_tx_interval_set", {std::to_string(timers.interval)});
    Undo first("sal_lldp_tx_delay_set", {"1"}); // undone first: any interval goes with it
    bench->works(ASK(sal_lldp_tx_delay_set, uint16_t{1}), "1 to 8192");
    bench->works(ASK(sal_lldp_holdtime_set, uint8_t{2}), "2 to 10");
    bench->works(ASK(sal_lldp_tx_interval_set, 32767u), "5 to 32767");
    judge_timers();
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_lldp_holdtime_set, uint8_t{3}), "the time to live is at most 65535 seconds");
    });
    bench->works(ASK(sal_lldp_tx_delay_set, uint16_t{8191}), "a quarter of the interval");
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_lldp_tx_delay_set, uint16_t{8192}), "no more than a quarter of the interval");
        bench->refuses(
            ASK(sal_lldp_tx_interval_set, 30u),
            "refused where the transmit delay would exceed a quarter of it");
    });
}

} // namespace

const Family lldp_family = {"lldp", reads, agreement, settings, changes};

} // namespace judge
