// Every action of the connection keeper that has calls of its own, one after the other.
#include "base/state.h"
#include "core/keeper_actions.h"
#include "json/json_document.h"
#include "sections/diagnostic.h"
#include "tests/support/on_board.h"
#include "tests/torture/torture.h"

namespace {

constexpr const char* messages[] = {
    R"({"action": "port_reset", "port": "1"})",
    R"({"action": "counter_reset", "port": "2"})",
    R"({"action": "cable_test", "port": "1"})",
    R"({"action": "traceroute", "host": "10.0.0.1", "hops": 3})",
    R"({"action": "ping_ipv4", "host": "10.0.0.1"})",
    R"({"action": "reboot"})",
    R"({"action": "restart_vxcloud"})",
    R"({"action": "api_test", "summary_info": {"device_name": "Tested"}, "snmp": {"enable": true},
        "device_access": {"gui": true}})",
};

cJSON* parsed[std::size(messages)];
bool raised[std::size(messages)]; // setting_from_cloud, by each

void prepare(sim::Board&) {
    for (std::size_t i = 0; i < std::size(messages); ++i)
        parsed[i] = parseJsonString(messages[i]);
}

void perform_all() {
    for (std::size_t i = 0; i < std::size(messages); ++i) {
        setting_from_cloud = 0;
        perform_keeper_action(parsed[i]);
        raised[i] = setting_from_cloud != 0;
    }
}

cJSON* show_state(sim::Board& board) {
    cJSON* state = createJsonObject();
    for (std::size_t i = 0; i < std::size(messages); ++i) {
        addJsonObjectBoolItem(state, getJsonStringValueForKey(parsed[i], "action"), raised[i]);
        deleteJsonObject(parsed[i]);
    }
    addJsonObjectIntItem(state, "marked", static_cast<int>(gCattr.port_reset_flags[0]));
    addJsonObjectIntItem(state, "cable_test_pending", static_cast<int>(cable_test_pending));
    addJsonObjectIntItem(state, "traceroute_status", static_cast<int>(traceroute_status));
    addJsonObjectIntItem(state, "ping_status", static_cast<int>(ping_status));
    addJsonObjectIntItem(state, "reboots", board.reboots);
    addJsonObjectIntItem(state, "restarts", board.agent_restarts);
    return state;
}

const torture::Scenario keeper = {"keeper", prepare, perform_all, show_state};

} // namespace

TEST(KeeperTorture, each_call_that_fails_has_the_outcome_of_its_row) {
    torture::torture(keeper, torture::platform_calls | torture::driver_requests | torture::files);
}
