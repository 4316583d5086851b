"""The list of switches."""
from browser import MAC, PageTest

STRANGER = "02:00:00:00:00:99"


class Switches(PageTest):
    def test_a_switch_is_told_in_one_line(self):
        self.open()
        row = self.find(f"tr[data-mac='{MAC}']", "On the cloud").text
        for told in (MAC, "Q18r5", "1.0.0", "s ago"):
            self.assertIn(told, row)
        self.find("#live", "live")
        self.check_view("switches")

    def test_settings_that_wait_are_told_by_their_number(self):
        self.lab.ask("PUT", f"/switches/{STRANGER}", {"key": "k", "secret": "s"})
        number = self.lab.ask("POST", f"/switches/{STRANGER}/settings",
                              {"system": {"dark_mode": True}})["config_seqno"]
        self.open()
        row = self.find(f"tr[data-mac='{STRANGER}']", "Never seen").text
        self.assertIn(f"→ {number}", row)
        self.lab.ask("DELETE", f"/switches/{STRANGER}")
        self.wait("the list follows", lambda: not self.all(f"tr[data-mac='{STRANGER}']"))

    def test_pages_gone_from_leave_no_connection_behind(self):
        for _ in range(8):  # a browser has six for a host
            self.driver.get("about:blank")
            self.driver.get(self.address + f"#/switch/{MAC}/ports")
            self.find("a.port[data-port='1']", seconds=15)
            self.find("#live.on")

    def test_nothing_comes_from_elsewhere(self):
        self.open()
        self.find(f"tr[data-mac='{MAC}']")
        loaded = self.script("return performance.getEntriesByType('resource').map((one) => one.name)")
        self.assertGreater(len(loaded), 10)
        self.assertEqual([], [name for name in loaded if not name.startswith(self.address)])

    def test_the_list_is_searched(self):
        self.open()
        self.type_into("input[type=search]", "nothing is called this")
        self.find(".empty", "No switch is like that.")
        self.type_into("input[type=search]", MAC[-5:].lower())
        self.find(f"tr[data-mac='{MAC}']")
