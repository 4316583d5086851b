// A table of the actions, each with the port it needs and what it does.
#include "core/keeper_actions.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "base/command.h"
#include "base/debug.h"
#include "base/errors.h"
#include "base/port_id.h"
#include "base/state.h"
#include "core/api_test.h"
#include "core/check_in.h"
#include "json/json_document.h"
#include "platform/mib.h"
#include "platform/vxcloud.h"
#include "sections/diagnostic.h"
#include "sections/port/bounce.h"
#include "sections/port/power.h"

namespace {

void check_in(const cJSON*, int) { api_checkin(); }

void reboot(const cJSON*, int) { run_command("handler -f reboot 1> /dev/null 2> /dev/null &"); }

// The thread cannot be cancelled amidst this, which would leave the port disabled.
void reset_port(const cJSON*, int port) {
    bounce_enabled_port(port);
    reset_power(port);
    mark_port_reset(port);
}

void clear_counters(const cJSON*, int port) { sal_mib_cntr_clr(port); }

void test_cable(const cJSON*, int port) { vxc_cable_test(port); }

void trace_route(const cJSON* message, int) {
    if (vxc_traceroute(message))
        log_failure("traceroute fail");
}

void ping(const cJSON* message, int) {
    if (vxc_ping_ipv4(message))
        log_failure("ping fail");
}

void restart_agent(const cJSON*, int) { sal_vxcloud_kill(); }

void apply_message(const cJSON* message, int) { api_test(message); }

struct KeeperAction {
    const char* name;
    bool (*parse_port)(const char* id, int* port); // null for an action on no port
    const char* announcement;                      // for the console, or null
    void (*perform)(const cJSON* message, int port);
    bool changes; // the cloud is to get a fresh report
};

const KeeperAction actions[] = {
    {"checkin", nullptr, "connection-keeper: checkin\n", check_in, false},
    {"reboot", nullptr, "connection-keeper: reboot\n", reboot, false},
    {"port_reset", parse_port_id, "connection-keeper: reset\n", reset_port, true},
    {"counter_reset", parse_port_id, "connection-keeper: counter_reset\n", clear_counters, true},
    {"restart_vxcloud", nullptr, nullptr, restart_agent, false},
    {"cable_test", parse_copper_port_id, "connection-keeper: cable_test\n", test_cable, true},
    {"traceroute", nullptr, nullptr, trace_route, true},
    {"ping_ipv4", nullptr, nullptr, ping, true},
    {"api_test", nullptr, nullptr, apply_message, false},
};

const KeeperAction* find_action(const char* name) {
    for (const KeeperAction& action : actions) {
        if (name && strcmp(action.name, name) == 0)
            return &action;
    }
    return nullptr;
}

bool find_port(const KeeperAction& action, const cJSON* message, int* port) {
    if (!action.parse_port)
        return true;
    const char* id = getJsonStringValueForKey(message, "port");
    return id && action.parse_port(id, port);
}

} // namespace

void perform_keeper_action(const cJSON* message) {
    const KeeperAction* action = find_action(getJsonStringValueForKey(message, "action"));
    int port = 0;
    if (!action || !find_port(*action, message, &port))
        return;
    if (action->announcement)
        debug_print("%s", action->announcement);
    action->perform(message, port);
    if (action->changes)
        setting_from_cloud = 1;
}
