"""A switch's ports: the front panel, the table, the details of one."""
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

from browser import MAC, NARROW, PageTest

GIGABIT, HUNDRED, TEN, TEN_GIGABIT = 2, 1, 0, 5


def hardware(copper, plugged):
    """A switch of so many copper ports, of which some are plugged: {index: speed}."""
    ports = [{"plugged": False} for _ in range(copper + 2)]
    for index, speed in plugged.items():
        ports[index] = {"plugged": True, "partner_speed": speed, "rx_packets_per_second": 900,
                        "tx_packets_per_second": 400}
    for index in (copper, copper + 1):
        ports[index]["fibre"] = True
    ports[copper + 1].update(ten_gigabit=True, plugged=True, partner_speed=TEN_GIGABIT)
    return {
        "logical_ports": copper + 10,
        "ports": ports,
        "poe": {"budget": 3700, "ports": [{"demand": 62 if index % 3 == 0 and index in plugged else 0,
                                           "class": 3} for index in range(min(copper, 24))]},
    }


# The ids of the ports and what is drawn for each, at one moment: the next report draws them anew.
PANEL = """
    return [...document.querySelectorAll("a.port")].map((port) => {
      const {x, y} = port.getBoundingClientRect();
      return [port.dataset.port, {x, y, speed: port.getAttribute("class").split(" ").pop(),
        shape: port.querySelector(".sign").getAttribute("d"),
        power: port.querySelector(".bolt") !== null}];
    })"""


class Ports(PageTest):
    # A mark of a reset stands until the next check-in, which leaves the page a minute.
    scenario = {"cloud": {"checkin_interval": 3600}, "hardware": {
        **hardware(18, {0: GIGABIT, 1: HUNDRED, 2: TEN, 3: GIGABIT, 6: GIGABIT}),
        "lldp": {"neighbours": [{"port": 3, "chassis_id": "02:11:22:33:44:55",
                                 "system_name": "core-2", "port_id": "gi0/7"}]}}}

    def port(self, number, more=""):
        return self.find(f"a.port[data-port='{number}']{more}")

    def test_the_front_panel_shows_every_port(self):
        self.open(f"#/switch/{MAC}/ports")
        self.port(1)
        panel = dict(self.script(PANEL))
        self.assertEqual([str(n) for n in range(1, 19)] + ["F1", "F2"]
                         + [f"trunk{n}" for n in range(1, 9)], list(panel))
        speeds = {"1": "g1", "2": "m100", "3": "m10", "5": "none", "F2": "g10"}
        self.assertEqual(speeds, {number: panel[number]["speed"] for number in speeds})
        shapes = {panel[number]["shape"] for number in speeds}
        self.assertEqual(5, len(shapes), "a speed has a shape of its own")
        self.assertEqual(panel["1"]["x"], panel["2"]["x"])
        self.assertLess(panel["1"]["y"], panel["2"]["y"])
        self.assertTrue(panel["1"]["power"])
        self.assertFalse(panel["5"]["power"])
        self.look(1280, height=640)
        self.picture("doc-switch", whole=False)
        self.check_view("ports")

    def test_vlan_and_neighbour_are_told_on_demand(self):
        self.open(f"#/switch/{MAC}/ports")
        ActionChains(self.driver).move_to_element(self.port(4)).perform()
        told = self.find(".told", "Port 4").text
        self.assertIn("neighbour core-2", told)
        self.assertIn("VLAN 1", told)
        self.choose(".front select", "neighbour")
        self.assertEqual("core-2", self.port(4).find_element("css selector", ".label").text)
        self.choose(".front select", "power")
        self.assertEqual("6.2 W", self.port(1).find_element("css selector", ".label").text)

    def test_a_port_that_was_reset_is_marked(self):
        self.open(f"#/switch/{MAC}/ports")
        self.assertFalse(self.port(2).find_elements("css selector", ".reset"))
        self.lab.push(action="port_reset", port="2")
        self.find("a.port[data-port='2'] .reset")

    def test_the_panel_is_walked_by_keys(self):
        self.open(f"#/switch/{MAC}/ports")
        self.port(1)
        self.script("document.querySelector('a.port').focus()")
        self.key(Keys.ARROW_RIGHT)
        self.key(Keys.ARROW_DOWN)
        self.find(".told", "Port 4:")
        self.key(Keys.END)
        self.find(".told", "Group 8:")
        self.key(Keys.HOME)
        self.key(Keys.ENTER)
        self.find(".details h2", "Port 1")

    def test_the_table_is_sorted_and_ports_are_compared(self):
        self.open(f"#/switch/{MAC}/ports")
        self.press("table.ports .sort", "PoE")
        self.press("table.ports .sort", "PoE")
        self.find("th[aria-sort=descending]", "PoE")
        rows = self.all("table.ports tbody tr")
        self.assertEqual({"1", "4", "7"}, {row.get_attribute("data-port") for row in rows[:3]})
        self.press("tr[data-port='1'] input")
        self.press("tr[data-port='2'] input")
        self.find(".comparison tr", "link_speed_neg")
        told = self.script("return document.querySelector('.comparison').textContent")
        self.assertNotIn("flow_control", told, "what is the same is left out")
        self.picture("ports-compared")

    def test_a_port_opens_its_details(self):
        self.lab.push(action="checkin")
        self.lab.push(action="checkin")
        self.wait("three reports", lambda: self.lab.ask("GET", f"/switches/{MAC}")["reports"] >= 3)
        self.open(f"#/switch/{MAC}/ports/4")
        details = self.find(".details", "core-2").text
        for told in ("1000 Mbit/s full", "gi0/7", "None is bound to this port."):
            self.assertIn(told, details)
        self.find(".counters tr", "rx all")
        self.wait("a rate", lambda: "/s" in self.find(".counters tr", "rx all").text)
        rate = self.find(".counters tr", "rmon octets").text
        self.assertNotIn("–", rate)
        self.find("svg.chart path.line-1")
        self.check_view("port")


class LargeSwitch(PageTest):
    scenario = {"hardware": hardware(86, {index: (GIGABIT, HUNDRED, TEN)[index % 3]
                                          for index in range(0, 86, 2)})}

    def test_ninety_six_ports_are_readable_at_any_width(self):
        self.open(f"#/switch/{MAC}/ports")
        self.find("a.port[data-port='86']")
        self.assertEqual(96, len(self.all("a.port")))
        self.check_view("ports-96")
        self.look(NARROW)
        self.wait("drawn anew", lambda: self.find("svg.panel-picture").size["width"] < NARROW)
        self.assertGreaterEqual(self.find("a.port .jack").size["width"], 44)


HOSTILE = "<img src=x onerror=\"window.taken=1\">"


class HostileTexts(PageTest):
    """What a switch says is never markup."""
    scenario = {
        "config": {"system": {"name": HOSTILE}},
        "hardware": {**hardware(18, {0: GIGABIT}),
                     "lldp": {"neighbours": [{"port": 0, "chassis_id": "02:11:22:33:44:55",
                                              "system_name": HOSTILE, "port_id": HOSTILE}]}}}

    def assert_harmless(self):
        self.assertEqual([], self.all("main img"))
        self.assertIsNone(self.script("return window.taken"))

    def test_names_show_as_they_are(self):
        self.open()
        self.find(f"tr[data-mac='{MAC}'] a", HOSTILE)
        self.assert_harmless()
        for place in ("ports", "ports/1"):
            self.open(f"#/switch/{MAC}/{place}")
            self.find("h1", HOSTILE)
            self.find("main", HOSTILE)
            self.assert_harmless()
        self.open(f"#/switch/{MAC}/ports")
        ActionChains(self.driver).move_to_element(self.find("a.port[data-port='1']")).perform()
        self.find(".told", HOSTILE)
        self.assert_harmless()
        self.picture("hostile")

    def test_the_page_may_not_run_what_is_not_its_own(self):
        self.open()
        self.find(f"tr[data-mac='{MAC}']")
        refused = self.script(
            "const place = document.createElement('div');"
            "try { place.innerHTML = '<b>x</b>'; return ''; } catch (e) { return e.name; }")
        self.assertEqual("TypeError", refused)
        self.driver.get_log("browser")
