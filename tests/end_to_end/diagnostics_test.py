"""Diagnostics that the cloud asks for, and a reboot ordered among the settings."""
from end_to_end import EndToEnd

END = "\\r\\n"  # how a line ends in a report


class Diagnostics(EndToEnd):
    # What the switch runs and waits for passes sooner than the wall's clock.
    speed = 200

    def setUp(self):
        super().setUp()
        self.start()
        self.event("poll")

    def push(self, bad=False, **action):
        """An action is pushed; the report of the check-in that follows it, its results."""
        after = self.lab.last_event()
        self.lab.push(bad, **action)
        answered = self.event("action-answered", after)["id"]
        self.event("checkin", answered)
        return self.lab.report().get("diagnostic")

    def commands(self):
        return [line for line in self.switch.trace() if line.startswith("system(\"")]

    def test_a_cable_test_is_reported_once(self):
        test = self.push(action="cable_test", port="5")["cable_test"]
        self.assertEqual(test["port"], 5)
        self.assertEqual(list(test), ["port", "pair_a", "cable_a_length_m", "pair_b",
                                      "cable_b_length_m", "pair_c", "cable_c_length_m",
                                      "pair_d", "cable_d_length_m"])
        self.assertGreater(test["cable_a_length_m"], 0)
        self.assertIsNone(self.push(action="checkin"))

    def test_a_traceroute_is_reported_once(self):
        result = self.push(action="traceroute", host="www.example.com", hops=8)
        lines = result["traceroute"].split(END)
        self.assertEqual(lines[0],
                         "traceroute to www.example.com (192.0.2.80), 8 hops max, 38 byte packets")
        self.assertTrue(lines[1].startswith(" 1  192.168.1.1 (192.168.1.1)  "))
        self.assertTrue(lines[-2].startswith(" 5  www.example.com (192.0.2.80)  "))
        self.assertNotIn(": x", result["traceroute"])
        self.assertFalse((self.switch.root / "tmp/traceroute_tmp0").exists())
        self.assertIsNone(self.push(action="checkin"))

    def test_a_ping_is_reported_once(self):
        result = self.push(action="ping_ipv4", host="192.168.1.1", count=3, interval=1, size=64)
        text = result["ping_ipv4"]
        self.assertTrue(text.startswith("PING 192.168.1.1 (192.168.1.1): 64 data bytes" + END))
        self.assertIn("3 packets transmitted, 3 packets received, 0% packet loss", text)
        self.assertFalse((self.switch.root / "tmp/pingtest_tmp").exists())
        self.assertIsNone(self.push(action="checkin"))

    def test_a_host_that_does_not_answer_is_reported_too(self):
        result = self.push(action="ping_ipv4", host="203.0.113.7", count=1, interval=1, size=56)
        self.assertIn("100% packet loss", result["ping_ipv4"])

    def test_a_request_without_a_host_is_logged_and_followed_by_a_checkin(self):
        self.assertIsNone(self.push(bad=True, action="traceroute"))
        self.assertIsNone(self.push(bad=True, action="ping_ipv4"))
        trace = self.switch.trace()
        self.assertIn("sys_log(7, 21, \"traceroute fail\") = 0", trace)
        self.assertIn("sys_log(7, 21, \"ping fail\") = 0", trace)

    def test_a_hostile_host_name_is_never_interpreted(self):
        precious = self.switch.root / "etc/precious"
        precious.write_text("kept")
        for host in ("a;handler -f reboot", "$(handler -f reboot)", "`handler -f reboot`",
                     "a|rm /etc/precious", "a&&rm /etc/precious", "a > /etc/precious",
                     "';rm /etc/precious;'", "'\\''", "a\nrm /etc/precious", "\"", "x" * 9000):
            quoted = host if host.isalnum() else "'" + host.replace("'", "'\\''") + "'"
            self.push(bad=True, action="ping_ipv4", host=host, count=1, interval=1, size=56)
            self.push(bad=True, action="traceroute", host=host, hops=2)
            trace = "\n".join(self.switch.trace())
            self.assertIn(f"ping -c 1 -s 56 -i 1 {quoted} > /tmp/pingtest_tmp", trace)
            self.assertIn(f"traceroute -v {quoted} -m 2 > /tmp/traceroute_tmp0", trace)
        ran = {command.split("\"")[1].split(" ")[0] for command in self.commands()}
        self.assertEqual(ran, {"cat", "ping", "rm", "traceroute"})
        self.assertEqual(precious.read_text(), "kept")


class RebootOrder(EndToEnd):
    def setUp(self):
        super().setUp()
        self.start()

    def name(self, report):
        return report["system"]["summary_info"]["device_name"]

    def uptime(self, report):
        return report["system"]["summary_info"]["uptime_seconds"]

    def queue(self, report):
        return report["vlan"]["voice"]["remark_cos"]

    def test_keeps_what_was_saved_loses_the_rest_and_starts_time_again(self):
        self.apply({"system": {"summary_info": {"device_name": "Saved"}}})
        saved_queue = self.queue(self.lab.report())
        # A section that is refused halfway is not saved, though its first half is in force; nor is
        # a document that orders nothing but a reboot.
        self.switch.request({"vlan": {"voice": {
            "mode": 1, "vlan_id": 20, "remark_cos": saved_queue - 1, "aging_time": -1}}},
            bad=True)
        running = self.report_until("half a section", lambda r: self.queue(r) == saved_queue - 1)
        self.switch.request({"system": {"reboot": True}})
        report = self.report_until("a fresh start", lambda r: self.uptime(r) < self.uptime(running))
        self.assertIn("sal_sys_reboot() = 0", self.switch.trace())
        self.assertEqual(self.name(report), "Saved")
        self.assertEqual(self.queue(report), saved_queue)
        self.assertIs(report["system"]["reboot"], False)

    def test_is_obeyed_once(self):
        number = self.lab.queue_settings({"system": {"reboot": True}})
        self.event("settings-acknowledged", config_seqno=number)
        self.report_until("a fresh start", lambda r: self.uptime(r) < 60 and
                          "sal_sys_reboot() = 0" in self.switch.trace())
        self.next_checkin()
        self.next_checkin()
        self.assertEqual(self.switch.trace().count("sal_sys_reboot() = 0"), 1)

    def test_of_false_changes_nothing(self):
        self.apply({"system": {"reboot": False}})
        self.assertNotIn("sal_sys_reboot() = 0", self.switch.trace())


class DarkMode(EndToEnd):
    def test_is_kept_by_the_startup_configuration_and_ended(self):
        self.start()
        self.assertIs(self.lab.report()["system"]["dark_mode"], False)
        self.assertIs(self.apply({"system": {"dark_mode": True}})["system"]["dark_mode"], True)
        self.assertEqual(self.switch.startup_config()["leds"]["mode"], 7)
        self.assertIs(self.apply({"system": {"dark_mode": False}})["system"]["dark_mode"], False)


class Uplink(EndToEnd):
    def test_is_the_port_behind_which_the_gateway_is(self):
        self.start()
        report = self.lab.report()
        self.assertEqual(report["system"]["uplink_port"], 5)
        self.assertEqual(report["system"]["management_vlan"], 1)
