// The switch is set up by the agent itself, so that what is reported is what it can set.
#include "tests/torture/switch_in_use.h"

#include <fstream>

#include "core/dispatch.h"
#include "json/json_document.h"
#include "sections/diagnostic.h"

namespace torture {

namespace {

constexpr const char* set_up = R"({
  "acl": {
    "mac_acl": [{"name": "M", "method": 1}],
    "mac_ace": [
      {"acl_name": "M", "sequence": 1, "method": 1, "action": 1, "vlan_id": 1, "ethertype": "0800",
       "priority": 3, "source_mac": "02:00:00:00:00:01", "destination_mac": "02:00:00:00:00:02"},
      {"acl_name": "M", "sequence": 2, "method": 1, "action": 0}],
    "ipv4_acl": [{"name": "I", "method": 1}],
    "ipv4_ace": [
      {"acl_name": "I", "sequence": 1, "method": 1, "action": 1, "protocol": 6,
       "source_ip": "10.0.0.1", "destination_ip": "10.0.0.2",
       "destination_port_first": 80, "destination_port_second": 90},
      {"acl_name": "I", "sequence": 2, "method": 1, "action": 0}]
  },
  "vlan": {"voice": {"mode": 1, "vlan_id": 1,
                     "oui": [{"method": 1, "address": "00:01:02:00:00:00", "description": "T"}]}},
  "system": {
    "ports": [{"id": "1", "tagged_vlans": "7", "acl": {"mac": "M", "ipv4": "I"},
               "rate_limit": {"tx_limit_kbps": 5000, "rx_limit_kbps": 5000,
                              "enable_tx": true, "enable_rx": true}}],
    "snmp": {"communities": [{"name": "reader", "access": 1, "action": 1}],
             "trap": [{"action": 1, "host": "10.0.0.9", "version": "v2c", "notify_type": "informs",
                       "community_name": "reader"}]},
    "port_mirror": [{"id": 1, "session_state": true, "destination_port": 2, "source_rx_port": "1",
                     "source_tx_port": "1"}],
    "link_aggregation": [{"id": 8, "mode": 1, "members": "3"}]
  }
})";

void put_file(sim::Board& board, const char* path, const char* text) {
    std::ofstream(board.path(path)) << text;
}

} // namespace

void apply(const char* text) {
    cJSON* document = parseJsonString(text);
    if (document)
        vxc_set(document);
    deleteJsonObject(document);
}

void put_switch_to_use(sim::Board& board) {
    apply(set_up);
    board.device.cloud.seqno = 5;
    for (int port : {0, 0, 1}) {
        sim::LldpPeer peer;
        peer.port = port;
        peer.chassis_id = "02:BB:00:00:00:01";
        board.device.lldp.neighbours.push_back(peer);
    }
    cable_result = {1, {1, 2, 0, 0}, {3, 4, 5, 6}};
    cable_test_pending = 1;
    traceroute_status = ping_status = DIAGNOSTIC_READY;
    put_file(board, "/tmp/traceroute_tmp0", "one\ntwo\n");
    put_file(board, "/tmp/pingtest_tmp", "three\nfour\n");
}

} // namespace torture
