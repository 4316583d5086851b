"""The connection keeper and local requests."""
import time

from end_to_end import EndToEnd


class Keeper(EndToEnd):
    def setUp(self):
        super().setUp()
        self.started = self.start()
        self.event("poll")

    def push(self, bad=False, **action):
        after = self.lab.last_event()
        self.lab.push(bad, **action)
        return self.event("action-answered", after)["id"]

    def test_a_pushed_checkin_is_performed_within_a_second(self):
        began = time.monotonic()
        answered = self.push(action="checkin")
        self.event("checkin", answered)
        self.assertLess(time.monotonic() - began, 1)

    def test_a_port_reset_is_reported_at_once(self):
        answered = self.push(action="port_reset", port="3")
        self.event("checkin", answered)
        trace = self.switch.trace()
        self.assertIn("sal_port_enable_set(2, 0) = 0", trace)
        self.assertIn("sal_port_enable_set(2, 1) = 0", trace)

    def test_counters_are_cleared(self):
        answered = self.push(action="counter_reset", port="F1")
        self.event("checkin", answered)
        self.assertIn("sal_mib_cntr_clr(18) = 0", self.switch.trace())

    def test_a_reboot_brings_the_switch_back(self):
        answered = self.push(action="reboot")
        self.event("checkin", answered)
        self.assertIn("system(\"handler -f reboot 1> /dev/null 2> /dev/null &\") = 0",
                      self.switch.trace())

    def test_a_restart_of_the_agent_keeps_what_the_switch_runs(self):
        self.switch.request({"system": {"summary_info": {"device_name": "Running"}}})
        self.report_until("the new name", lambda r: r["system"]["summary_info"][
            "device_name"] == "Running")
        answered = self.push(action="restart_vxcloud")
        self.event("checkin", answered)
        self.assertEqual(self.lab.report()["system"]["summary_info"]["device_name"], "Running")

    def test_bodies_of_the_wrong_shape_are_passed_over(self):
        for action in ({"action": "no such thing"}, {"action": "port_reset", "port": 3},
                       {"action": "port_reset"}, {"action": "counter_reset", "port": []},
                       {"action": "port_reset", "port": "trunk99999999999"}):
            self.push(bad=True, **action)
        answered = self.push(action="checkin")
        self.event("checkin", answered)

    def test_the_keeper_moves_to_another_host(self):
        port = self.lab.ports["keeper"][1]
        self.apply({"system": {"cloud": {"connkeeper_host": f"localhost:{port}"}}})
        self.event("poll", port=port)
        answered = self.push(action="checkin")
        self.event("checkin", answered)


class LocalRequest(EndToEnd):
    def setUp(self):
        super().setUp()
        self.start()

    def name(self):
        return self.lab.report()["system"]["summary_info"]["device_name"]

    def request(self, text):
        self.switch.request(text)
        self.wait("the request is taken", self.switch.request_is_gone)
        self.next_checkin()

    def test_is_applied_and_removed(self):
        self.request({"system": {"summary_info": {"device_name": "Local"}}})
        self.report_until("the name", lambda r: self.name() == "Local")

    def test_of_no_bytes_changes_nothing(self):
        self.request("")
        self.assertEqual(self.name(), "Switch")

    def padded(self, size):
        document = "{\"system\":{\"summary_info\":{\"device_name\":\"Padded\"}}}"
        return " " * (size - len(document)) + document

    def test_of_the_largest_size_is_applied(self):
        self.request(self.padded(20480))
        self.report_until("the name", lambda r: self.name() == "Padded")

    def test_of_one_byte_more_is_cut_and_refused(self):
        self.request(self.padded(20481))
        self.assertEqual(self.name(), "Switch")

    def test_may_be_missing(self):
        self.switch.tell()
        self.next_checkin()
        self.assertEqual(self.name(), "Switch")

    def test_may_be_a_folder(self):
        (self.switch.root / "tmp/vx_cloud_post").mkdir()
        self.switch.tell()
        self.next_checkin()
        self.assertEqual(self.name(), "Switch")
