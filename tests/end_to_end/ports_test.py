"""Ports and access lists: the cloud changes a running switch and sees it in the next report."""
from end_to_end import EndToEnd


def port(report, name):
    return next(port for port in report["system"]["ports"] if port["id"] == name)


class Ports(EndToEnd):
    def setUp(self):
        super().setUp()
        self.start()

    def set_ports(self, *elements, **sections):
        """Applies elements of "ports", and other sections; the report that acknowledges them."""
        return self.apply({"system": {"ports": list(elements)}, **sections})

    def traced(self, *calls):
        trace = self.switch.trace()
        return [line for line in trace if line.startswith(calls)]

    def test_a_port_moves_to_a_vlan_that_comes_and_goes_with_it(self):
        self.assertEqual(port(self.lab.report(), "3")["untagged_vlans"], "1")
        report = self.set_ports({"id": "3", "untagged_vlans": "20", "tagged_vlans": "30-32"},
                                {"id": "F1", "tagged_vlans": "20"})
        self.assertEqual(port(report, "3")["untagged_vlans"], "20")
        self.assertEqual(port(report, "3")["tagged_vlans"], "30-32")
        self.assertEqual(port(report, "F1")["tagged_vlans"], "20")
        self.assertEqual(port(report, "F1")["untagged_vlans"], "1")
        report = self.set_ports({"id": "3", "pvid": 20})
        self.assertEqual(port(report, "3")["pvid"], 20)
        self.assertEqual(self.saved_vlans(), [1, 20, 30, 31, 32])
        report = self.set_ports({"id": "3", "pvid": 1, "untagged_vlans": "1", "tagged_vlans": ""},
                                {"id": "F1", "tagged_vlans": ""})
        self.assertEqual(port(report, "3")["untagged_vlans"], "1")
        self.assertEqual(port(report, "3")["tagged_vlans"], "")
        self.assertEqual(self.saved_vlans(), [1])

    def saved_vlans(self):
        return [vlan["id"] for vlan in self.switch.startup_config()["vlans"]["entries"]]

    def test_speed_and_duplex_are_forced_and_negotiated_again(self):
        before = port(self.lab.report(), "1")
        self.assertEqual((before["status"], before["link_speed_mode"]), (1, 0))
        report = self.set_ports({"id": "1", "link_speed_mode": 3}, {"id": "F1", "link_speed_mode": 1})
        self.assertEqual(port(report, "1")["link_speed_mode"], 3)
        self.assertEqual(port(report, "1")["link_speed_neg"], 3)
        self.assertEqual(port(report, "F1")["link_speed_mode"], 1)
        self.assertIn("sal_port_10g_media_set(18, 2) = 0", self.switch.trace())
        report = self.set_ports({"id": "1", "link_speed_mode": 0})
        self.assertEqual(port(report, "1")["link_speed_mode"], 0)
        self.assertEqual(port(report, "1")["link_speed_neg"], before["link_speed_neg"])

    def test_power_is_taken_away_and_the_budget_shows_it(self):
        before = self.lab.report()
        draw = port(before, "1")["poe"]["power_draw"]
        self.assertGreater(draw, 0)
        report = self.set_ports({"id": "1", "poe": {"enable": False}},
                                {"id": "2", "poe": {"priority": 3, "power_limit_type": 1,
                                                    "power_limit_user": 15}})
        self.assertEqual(port(report, "1")["poe"]["enable"], False)
        self.assertEqual(port(report, "1")["poe"]["power_draw"], 0)
        self.assertAlmostEqual(report["system"]["poe"]["available_power_watts"],
                               before["system"]["poe"]["available_power_watts"] + draw, 1)
        second = port(report, "2")["poe"]
        self.assertEqual((second["priority"], second["power_limit_type"],
                          second["power_limit_user"]), (3, 1, 15))

    def test_an_access_list_is_made_bound_changed_and_taken_away(self):
        entry = {"acl_name": "guests", "sequence": 10, "method": 1, "action": 1, "protocol": 6,
                 "destination_ip": "192.0.2.0", "destination_mask": "255.255.255.0",
                 "destination_port_first": 80, "destination_port_second": 90, "tcp_flag_syn": 1}
        report = self.set_ports({"id": "4", "acl": {"ipv4": "guests"}},
                                acl={"ipv4_acl": [{"name": "guests", "method": 1}],
                                     "ipv4_ace": [entry]})
        self.assertEqual(report["acl"]["ipv4_acl"], [{"name": "guests"}])
        for key in entry.keys() - {"method"}:
            self.assertEqual(report["acl"]["ipv4_ace"][0][key], entry[key], key)
        self.assertEqual(port(report, "4")["acl"], {"mac": "", "ipv4": "guests"})

        report = self.apply({"acl": {"ipv4_ace": [
            {"acl_name": "guests", "sequence": 10, "method": 2, "action": 0}]}})
        self.assertEqual(report["acl"]["ipv4_ace"][0]["action"], 0)
        self.assertEqual(report["acl"]["ipv4_ace"][0]["destination_port_second"], 90)
        self.assertEqual(port(report, "4")["acl"]["ipv4"], "guests")
        self.assertEqual(self.traced("sal_acl_entry_bind", "sal_acl_entry_unbind"),
                         ['sal_acl_entry_bind("guests", 2, {3}) = 0',
                          'sal_acl_entry_unbind(2, {3}) = 0',
                          'sal_acl_entry_bind("guests", 2, {3}) = 0'])

        report = self.apply({"acl": {"ipv4_acl": [{"name": "guests", "method": 0}]}})
        self.assertEqual(report["acl"]["ipv4_acl"], [])
        self.assertEqual(report["acl"]["ipv4_ace"], [])
        self.assertEqual(port(report, "4")["acl"]["ipv4"], "")

    def test_a_refused_power_limit_is_not_acknowledged_and_what_came_before_it_stays(self):
        number = self.lab.queue_settings({"system": {"ports": [
            {"id": "1", "isolation": True}, {"id": "2", "poe": {"power_limit_user": 31}},
            {"id": "3", "isolation": True}]}}, bad=True)
        delivered = self.event("settings-delivered", config_seqno=number)
        self.event("checkin", delivered["id"], config_seqno=1)
        report = self.lab.report()
        self.assertEqual([port(report, name)["isolation"] for name in ("1", "2", "3")],
                         [True, False, False])

    def test_a_port_that_is_bounced_says_so_once(self):
        report = self.set_ports({"id": "5", "reset": True})
        self.assertEqual(port(report, "5")["connkeeper_reset"], True)
        self.next_checkin()
        self.assertEqual(port(self.lab.report(), "5")["connkeeper_reset"], False)
        self.assertEqual(self.traced("sal_port_enable_set"),
                         ["sal_port_enable_set(4, 0) = 0", "sal_port_enable_set(4, 1) = 0"])
