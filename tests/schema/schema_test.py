"""Documents against the schemas of docs/schema.

    schema_test.py tell              the schemas take what is right and refuse what is wrong
    schema_test.py examples DOCS     every example of the documents validates
    schema_test.py reports FOLDER    so does every report that tests have left there"""
import json
import pathlib
import re
import sys

import wire_schema

MAXIMUM_SHOWN = 20

# Documents and how they are to be judged: kind, right or not, document.
JUDGED = (
    ("settings", True, {}),
    ("settings", True, {"system": {"jumbo_frames": {"size": 1522}}}),
    ("settings", False, {"system": {"jumbo_frames": {"size": 1521}}}),
    ("settings", False, {"system": {"jumbo_frame": {"size": 1522}}}),
    ("settings", True, {"system": {"cloud": {"checkin_interval": 60}}}),
    ("settings", False, {"system": {"cloud": {"checkin_interval": 3601}}}),
    ("settings", True, {"system": {"cloud": {"checkin_host": "[2001:db8::1]:8443"}}}),
    ("settings", False, {"system": {"cloud": {"checkin_host": "https://example"}}}),
    ("settings", False, {"system": {"cloud": {"key": "alone"}}}),
    ("settings", True, {"system": {"summary_info": {"device_name": "Switch-1"}}}),
    ("settings", False, {"system": {"summary_info": {"device_name": "Switch-"}}}),
    ("settings", False, {"system": {"summary_info": {}}}),
    ("settings", True, {"system": {"ports": [{"id": "trunk8", "link_speed_mode": 6}]}}),
    ("settings", False, {"system": {"ports": [{"id": "trunk9"}]}}),
    ("settings", False, {"system": {"ports": [{"id": "trunk1", "rate_limit": {}}]}}),
    ("settings", False, {"system": {"ports": [{"enable": True}]}}),
    ("settings", False, {"system": {"ports": [{"id": "1", "poe": {"power_limit_user": 31}}]}}),
    ("settings", False, {"system": {"ports": [{"id": "1", "tagged_vlans": "1, 2"}]}}),
    ("settings", True, {"system": {"stp": {"priority": 61440}}}),
    ("settings", False, {"system": {"stp": {"priority": 4097}}}),
    ("settings", False, {"system": {"snmp": {"trap": [
        {"host": "a", "version": "v1", "notify_type": "informs", "community_name": "c",
         "action": 1}]}}}),
    ("settings", False, {"system": {"link_aggregation": [{"id": 1, "mode": 2}]}}),
    ("settings", False, {"system": {"firmware": {"upgrade_url": "http://a/b"}}}),
    ("settings", True, {"acl": {"mac_ace": [
        {"acl_name": "a", "sequence": 1, "method": 1, "action": 1, "ethertype": "0600"}]}}),
    ("settings", False, {"acl": {"mac_ace": [
        {"acl_name": "a", "sequence": 1, "method": 1, "action": 1, "ethertype": "05FF"}]}}),
    ("settings", False, {"acl": {"mac_ace": [
        {"acl_name": "a", "sequence": 1, "method": 1, "action": 1, "vlan_id": 0}]}}),
    ("settings", False, {"acl": {"ipv4_ace": [{"acl_name": "a", "sequence": 1, "method": 1}]}}),
    ("settings", False, {"qos": {"cos": [{"id": 8, "queue": 1}]}}),
    ("settings", True, {"vlan": {"voice": {"oui": [{"method": 0, "id": 15}]}}}),
    ("settings", False, {"vlan": {"voice": {"oui": [{"method": 1, "id": 15}]}}}),
    ("settings", False, {"lldp": {"settings": {"holdtime_multiplier": 11}}}),
    ("action", True, {"action": "port_reset", "port": "F1"}),
    ("action", False, {"action": "port_reset", "port": 1}),
    ("action", False, {"action": "cable_test", "port": "F1"}),
    ("action", False, {"action": "no such thing"}),
    ("action", False, {"action": "ping_ipv4", "host": "0.0.0.0", "count": 1, "interval": 1,
                       "size": 56}),
    ("action", True, {"action": "ping_ipv4", "host": "a.example", "count": 1, "interval": 1,
                      "size": 56}),
    ("action", True, {"action": "api_test", "device_access": {"ssh": False}}),
    ("part", True, {"system": {"firmware": {
        "active_partition": 1, "version_partition_1": "", "version_partition_2": "",
        "flags": [1, 102]}}}),
    ("part", False, {"system": {"firmware": {
        "active_partition": 1, "version_partition_1": "", "version_partition_2": "",
        "flags": [102, 1]}}}),
    ("part", False, {"system": {"ports": []}, "more": 1}),
    ("part", False, {"system": {"port_mirror": [
        {"id": 2, "destination_port": 0, "source_tx_port": "", "source_rx_port": "",
         "ingress_state": 0, "session_state": False}]}}),
    ("failing", False, {}),
    ("whole", False, {"system": {}, "acl": {}, "qos": {}, "lldp": {}}),
)


def tell():
    for kind, right, document in JUDGED:
        faults = list(wire_schema.faults(kind, document))
        if right == bool(faults):
            yield f"{kind} {json.dumps(document)}: {'; '.join(faults) or 'taken'}"


EXAMPLE = re.compile(r"^```json (report|part|settings|action)\n(.*?)^```$", re.M | re.S)


def examples(docs):
    count = 0
    for file in sorted(pathlib.Path(docs).rglob("*.md")):
        text = file.read_text()
        for found in EXAMPLE.finditer(text):
            count += 1
            kind = "whole" if found[1] == "report" else found[1]
            line = text.count("\n", 0, found.start()) + 1
            for fault in wire_schema.faults(kind, json.loads(found[2])):
                yield f"{file.name}:{line}: {fault}"
    print(f"{count} examples")
    if not count:
        yield "there are no examples"


def reports(folder):
    count = 0
    for file in sorted(pathlib.Path(folder).glob("*.json")):
        count += 1
        kind = file.name.split("-")[0]
        document = json.loads(file.read_text())
        if kind in ("part", "starving"):
            document = wire_schema.as_report(document)
        for fault in wire_schema.faults(kind, document):
            yield f"{file}: {fault}"
    print(f"{count} reports")
    if not count:
        yield "no test has left a report"


def main():
    check, *arguments = sys.argv[1:]
    found = list({"tell": tell, "examples": examples, "reports": reports}[check](*arguments))
    print("\n".join(found[:MAXIMUM_SHOWN]))
    if len(found) > MAXIMUM_SHOWN:
        print(f"... and {len(found) - MAXIMUM_SHOWN} more")
    return 1 if found else 0


sys.exit(main())
