// Every section once, with the keys that lead to most of its calls.
#include "tests/torture/settings.h"

const char* const whole_settings = R"({
  "acl": {
    "mac_acl": [{"name": "M", "method": 1}],
    "mac_ace": [{"acl_name": "M", "sequence": 1, "method": 1, "action": 1, "vlan_id": 1}],
    "ipv4_acl": [{"name": "I", "method": 1}],
    "ipv4_ace": [{"acl_name": "I", "sequence": 1, "method": 1, "action": 0, "protocol": 6,
                  "destination_port_first": 80, "destination_port_second": 90}]
  },
  "qos": {"enable": true, "scheduling_method": 1, "trust_mode": 1, "cos": [{"id": 5, "queue": 8}],
          "dscp": [{"id": 46, "queue": 8}]},
  "vlan": {"voice": {"mode": 0}},
  "lldp": {"settings": {"enable": true, "transmission_interval": 60, "transmit_delay": 3,
                        "holdtime_multiplier": 4, "reinitialization_delay": 2}},
  "system": {
    "summary_info": {"device_name": "Tortured"},
    "jumbo_frames": {"size": 9000},
    "cloud": {"checkin_interval": 600, "fallback_host": "localhost:1", "checkin_host": "localhost:2",
              "connkeeper_host": "localhost:3", "key": "k", "secret": "s", "timeout": 30},
    "dark_mode": true,
    "ports": [{"id": "1", "enable": true, "isolation": true, "poe": {"priority": 2},
               "untagged_vlans": "1", "link_speed_mode": 2, "flow_control": true,
               "rate_limit": {"tx_limit_kbps": 5000, "rx_limit_kbps": 5000, "enable_tx": true},
               "acl": {"mac": "M", "ipv4": "I"}}],
    "snmp": {"enable": true},
    "stp": {"enable": true, "force_version": 2, "priority": 4096},
    "igmp": {"enable": true, "version": 2, "vlan": [{"id": 1, "enable": true}]},
    "port_mirror": [{"id": 1, "session_state": true, "destination_port": 1, "source_rx_port": "2"}],
    "device_access": {"gui": true, "telnet": false, "ssh": true},
    "firmware": {"upgrade_partition": 2, "upgrade_url": "/flash/image0", "active_partition": 2}
  }
})";

const char* const group_settings = R"({
  "system": {
    "link_aggregation": [{"id": 8, "mode": 1, "members": "1-2"}, {"id": 8, "mode": 2, "members": "2"}]
  }
})";
