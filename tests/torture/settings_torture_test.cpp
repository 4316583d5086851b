// A settings document with every key of every section, on a switch that has been set up.
#include "base/state.h"
#include "core/dispatch.h"
#include "json/json_document.h"
#include "tests/torture/switch_in_use.h"
#include "tests/torture/torture.h"

namespace {

constexpr const char* every_key = R"({
  "acl": {
    "mac_acl": [{"name": "N", "method": 1}],
    "mac_ace": [
      {"acl_name": "M", "sequence": 3, "method": 1, "action": 1, "vlan_id": 1, "ethertype": "0800",
       "priority": 3, "source_mac": "02:00:00:00:00:01", "source_mask": "FF:FF:FF:FF:FF:00",
       "destination_mac": "02:00:00:00:00:02", "destination_mask": "FF:FF:FF:FF:FF:00"}],
    "ipv4_acl": [{"name": "J", "method": 1}],
    "ipv4_ace": [
      {"acl_name": "I", "sequence": 3, "method": 1, "action": 0, "protocol": 6,
       "type_of_service": 1, "source_ip": "10.0.0.1", "source_mask": "255.255.255.0",
       "destination_ip": "10.0.0.2", "destination_mask": "255.255.255.0", "icmp_code": 1,
       "source_port_first": 10, "source_port_second": 20, "destination_port_first": 80,
       "tcp_flag_urg": 1, "tcp_flag_ack": 2, "tcp_flag_psh": 1, "tcp_flag_rst": 1,
       "tcp_flag_syn": 1, "tcp_flag_fin": 0}]
  },
  "qos": {"enable": true, "scheduling_method": 1, "trust_mode": 1,
          "cos": [{"id": 5, "queue": 8}, {"id": 6, "queue": 8}], "dscp": [{"id": 46, "queue": 8}]},
  "vlan": {"voice": {
    "mode": 1, "vlan_id": 7, "802.1p_remark": true, "remark_cos": 5, "aging_time": 700,
    "oui": [{"method": 1, "address": "00:01:03:00:00:00", "description": "U"},
            {"method": 2, "id": 0, "address": "00:01:04:00:00:00", "description": "V"},
            {"method": 0, "id": 9}]}},
  "lldp": {"settings": {"enable": true, "transmission_interval": 60, "transmit_delay": 3,
                        "holdtime_multiplier": 4, "reinitialization_delay": 2}},
  "system": {
    "jumbo_frames": {"size": 9000},
    "cloud": {"key": "k", "secret": "s", "fallback_host": "localhost:1",
              "checkin_url": "localhost:2", "checkin_host": "localhost:3",
              "connkeeper_host": "localhost:4", "checkin_interval": 600, "timeout": 30,
              "connect_timeout": 20, "checkin_type": 2},
    "summary_info": {"device_name": "Tortured"},
    "dark_mode": true,
    "ports": [
      {"id": "1", "enable": true},
      {"id": "2", "reset": true, "isolation": true, "pvid": 1,
       "poe": {"priority": 2, "power_limit_type": 1, "power_limit_user": 20, "enable": true},
       "tagged_vlans": "8", "untagged_vlans": "1",
       "rate_limit": {"tx_limit_kbps": 5000, "enable_tx": true, "enable_rx": false},
       "link_speed_mode": 1, "flow_control": true, "qos": {"cos_value": 3, "trust": true},
       "voice_vlan": {"enable": true, "cos_mode": 1}, "acl": {"mac": "", "ipv4": "I"}},
      {"id": "F2", "link_speed_mode": 6},
      {"id": "trunk1", "link_speed_mode": 6}],
    "snmp": {"enable": true,
             "communities": [{"name": "writer", "access": 2, "action": 1},
                             {"name": "reader", "action": 2}],
             "trap": [{"action": 1, "host": "10.0.0.8", "version": "v1", "notify_type": "traps",
                       "community_name": "writer", "udp": 1162, "timeout": 1, "retry": 1},
                      {"action": 2, "host": "10.0.0.9", "version": "v2c",
                       "notify_type": "informs"}]},
    "stp": {"enable": true, "force_version": 2, "priority": 4096},
    "igmp": {"enable": true, "version": 3, "vlan": [{"id": 1, "enable": true, "fast_leave": true},
                                                    {"id": 7, "enable": true}]},
    "port_mirror": [{"id": 1, "destination_port": 2, "source_rx_port": "1", "source_tx_port": "",
                     "ingress_state": 1},
                    {"id": 2, "session_state": false}],
    "link_aggregation": [{"id": 8, "mode": 2, "members": "3"}, {"id": 7, "mode": 1, "members": "6"},
                         {"id": 6, "mode": 0}],
    "device_access": {"gui": true, "telnet": false, "ssh": false},
    "reboot": true
  }
})";

// Six copper ports; groups of either kind to be changed, and one to be dissolved whose port has
// link.
constexpr const char* board = R"({"hardware": {"logical_ports": 16}})";

constexpr const char* set_up = R"({
  "qos": {"enable": true},
  "vlan": {"voice": {"mode": 1, "vlan_id": 7}},
  "system": {"link_aggregation": [{"id": 7, "mode": 2, "members": "6"},
                                  {"id": 6, "mode": 1, "members": "5"}]}
})";

cJSON* document;

void prepare(sim::Board& switch_board) {
    torture::put_switch_to_use(switch_board);
    torture::apply(set_up);
    setting_from_cloud = 0;
    document = parseJsonString(every_key);
}

cJSON* show_state(sim::Board& switch_board) {
    deleteJsonObject(document);
    cJSON* state = createJsonObject();
    addJsonObjectIntItem(state, "setting_from_cloud", static_cast<int>(setting_from_cloud));
    addJsonObjectIntItem(state, "reboots", switch_board.reboots);
    addJsonObjectStringItem(state, "checkin_host", CheckinHost);
    addJsonObjectStringItem(state, "fallback_host", fallback_host);
    addJsonObjectStringItem(state, "connkeeper_host", ConnectionKeeperHost);
    addJsonObjectIntItem(state, "checkin_interval", CheckinInterval);
    addJsonObjectIntItem(state, "timeout", checkin_timeout);
    addJsonObjectIntItem(state, "keeper_restart", static_cast<int>(connection_url_change));
    return state;
}

const torture::Scenario settings = {
    "settings", prepare, [] { vxc_set(document); }, show_state, board};

} // namespace

TEST(SettingsTorture, each_call_that_fails_has_the_outcome_of_its_row) {
    torture::torture(settings);
}
