"""What a switch is told to do at once, and what its tests found."""
from browser import MAC, PageTest


class Actions(PageTest):
    speed = 120
    scenario = {"hardware": {"ports": [{"plugged": True, "cable": [
        {"state": 0, "length_m": 42}, {"state": 0, "length_m": 42},
        {"state": 1, "length_m": 17}, {"state": 0, "length_m": 42}]}]}}

    def actions(self):
        return [entry["document"] for entry in self.lab.ask("GET", f"/switches/{MAC}/actions")]

    def pushed(self, **action):
        self.wait(f"{action} was pushed", lambda: action in self.actions())
        self.find(".log li", "✓ sent")

    def open_actions(self):
        self.open(f"#/switch/{MAC}/actions")
        self.find("form h2", "Ping")

    def test_the_switch_checks_in_when_told(self):
        self.open_actions()
        after = self.lab.last_event()
        self.press("button", "Check in now")
        self.pushed(action="checkin")
        self.lab.event("checkin", after)

    def test_a_reboot_stands_behind_a_question(self):
        self.open_actions()
        self.press("button", "Reboot")
        self.find("dialog", "The switch restarts")
        self.check_accessible()
        self.picture("question", whole=False)
        self.press("dialog button", "Cancel")
        self.wait("no question", lambda: not self.all("dialog"))
        self.assertNotIn({"action": "reboot"}, self.actions())
        self.press("button", "Restart the agent")
        self.press("dialog button", "Restart the agent")
        self.pushed(action="restart_vxcloud")

    def test_ports_are_reset_and_counters_cleared(self):
        self.open_actions()
        self.choose("section select", "2")
        self.press("section button", "Clear its counters")
        self.pushed(action="counter_reset", port="2")
        self.press("section button", "Reset the port")
        self.press("dialog button", "Reset the port")
        self.pushed(action="port_reset", port="2")

    def test_a_cable_test_is_drawn(self):
        self.open_actions()
        self.press("section button", "Test the cable")
        self.pushed(action="cable_test", port="1")
        drawn = self.find("svg.cable", seconds=40)
        self.assertEqual("Cable at port 1: pair A sound, 42 m; pair B sound, 42 m; "
                         "pair C open, 17 m; pair D sound, 42 m", drawn.get_attribute("aria-label"))
        self.assertEqual(3, len(self.all("svg.cable circle.end")))
        self.assertEqual(1, len(self.all("svg.cable path.end.bad")))

    def test_hosts_are_pinged_and_traced(self):
        self.open_actions()
        name = self.find("label", "Host to ping").get_attribute("for")
        self.type_into(f"#{name}", "192.168.1.1")
        self.press("form button", "Ping")
        self.pushed(action="ping_ipv4", host="192.168.1.1", count=4, interval=1, size=56)
        self.find("pre.output", "packets received", seconds=40)
        name = self.find("label", "Host to trace").get_attribute("for")
        self.type_into(f"#{name}", "www.example.com")
        self.press("form button", "Trace the way")
        self.pushed(action="traceroute", host="www.example.com", hops=30)
        self.find("pre.output", "192.0.2.80", seconds=40)
        self.check_view("actions")
