"""Mirror and aggregation groups of a running switch, and its neighbours."""
from end_to_end import EndToEnd


def group(report, section, number):
    return report["system"][section][number - 1]


class Links(EndToEnd):
    scenario = {"hardware": {"lldp": {"neighbours": [
        {"port": 4, "chassis_id": "sw\t\u00e4", "port_id": "gi7", "system_name": "Core"}]}}}

    def test_groups_change_on_a_running_switch(self):
        self.start()
        before = self.lab.report()
        self.assertEqual(group(before, "link_aggregation", 2), {"id": 2, "mode": 0, "members": ""})
        self.assertFalse(group(before, "port_mirror", 1)["session_state"])

        mirror = {"id": 1, "destination_port": 9, "source_tx_port": "3", "source_rx_port": "3-5",
                  "ingress_state": 1, "session_state": True}
        trunk = {"id": 2, "mode": 2, "members": "1-2,7"}
        report = self.apply({"system": {"port_mirror": [mirror], "link_aggregation": [trunk]}})
        self.assertEqual(group(report, "port_mirror", 1), mirror)
        self.assertEqual(group(report, "link_aggregation", 2), trunk)

        steps = self.switch.trace()
        down = steps.index("ioctl(3457, 0, 0, 0, 0) = 0")
        formed = steps.index("sal_lacp_member_set(1, {0-1,6}) = 0")
        up = steps.index("sal_port_enable_set(0, 1) = 0")
        self.assertEqual(sorted([down, formed, up]), [down, formed, up])
        self.assertEqual(self.switch.startup_config()["trunks"]["groups"][1]["members"], "0-1,6")

        report = self.apply({"system": {"link_aggregation": [{"id": 2, "mode": 0}]}})
        self.assertEqual(group(report, "link_aggregation", 2), {"id": 2, "mode": 0, "members": ""})
        self.assertEqual(group(report, "port_mirror", 1), mirror)

    def test_a_port_with_security_is_not_aggregated_and_the_settings_not_acknowledged(self):
        self.switch.scenario.write_text(self.switch.scenario.read_text().replace(
            '"hardware"', '"config": {"ports": [{"security": true}]}, "hardware"', 1))
        self.start()
        number = self.lab.queue_settings(
            {"system": {"link_aggregation": [{"id": 1, "mode": 1, "members": "1,2"}]}})
        delivered = self.event("settings-delivered", config_seqno=number)
        self.event("checkin", delivered["id"], config_seqno=1)
        self.assertEqual(group(self.lab.report(), "link_aggregation", 1)["mode"], 0)

    def test_lldp_timers_and_neighbours(self):
        self.start()
        report = self.apply({"lldp": {"settings": {"transmission_interval": 60,
                                                   "transmit_delay": 15}}})
        self.assertEqual(report["lldp"]["settings"], {
            "enable": True, "transmission_interval": 60, "holdtime_multiplier": 4,
            "reinitialization_delay": 2, "transmit_delay": 15})
        neighbour, = report["lldp"]["remote"]
        self.assertEqual(neighbour["port"], 5)
        self.assertEqual(neighbour["chassis_id"], "sw   ")
        self.assertEqual(neighbour["remote_id"], "gi7")
