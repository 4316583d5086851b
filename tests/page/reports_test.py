"""Reports: as a tree, compared, and over time."""
from selenium.webdriver.common.keys import Keys

from browser import MAC, PageTest


class Reports(PageTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        for document in ({"system": {"jumbo_frames": {"size": 9000}}}, {"system": {"dark_mode": True}}):
            number = cls.lab.queue_settings(document)
            cls.lab.push(action="checkin")
            cls.lab.event("settings-acknowledged", 0, 40, lambda event: event["config_seqno"] == number)

    def test_the_latest_is_a_tree_to_search_and_fold(self):
        self.open(f"#/switch/{MAC}/reports")
        self.find(".tree summary", "system")
        self.assertFalse([leaf for leaf in self.all(".tree .leaf") if "jumbo" in leaf.text])
        label = self.find("label", "Search the report").get_attribute("for")
        self.type_into(f"#{label}", "9000")
        self.find(".tree .leaf", "size: 9000")
        self.wait("nothing else", lambda: all("9000" in leaf.text for leaf in self.all(".tree .leaf")))
        self.find(".tree mark", "9000")
        self.type_into(f"#{label}", "no member is called this")
        self.find(".tree-place .empty")
        self.type_into(f"#{label}", "jumbo_frames")
        self.find(".tree summary", "jumbo_frames")
        self.check_view("report-tree")
        self.find(f"#{label}").send_keys(Keys.CONTROL, "a")
        self.find(f"#{label}").send_keys(Keys.DELETE)
        self.wait("whole again", lambda: len(self.all(".tree summary")) > 5)
        self.press("button", "Unfold all")
        self.find(".tree .leaf", "device_name")
        self.press("button", "Fold all")
        self.wait("folded", lambda: not self.all(".tree details[open]"))

    def test_two_are_compared_member_by_member(self):
        self.open(f"#/switch/{MAC}/reports")
        reports = self.wait("the list", lambda: len(self.all("tr[data-report]")) >= 3
                            and [row.get_attribute("data-report") for row in self.all("tr[data-report]")])
        for number in (reports[0], reports[-1]):
            self.press(f"tr[data-report='{number}'] input")
        row = self.find(".comparison tr", "system › jumbo_frames › size").text
        self.assertIn("1522", row)
        self.assertIn("9000", row)
        label = self.find("label", "Only members with").get_attribute("for")
        self.type_into(f"#{label}", "dark_mode")
        self.wait("only that", lambda: [row.text for row in self.all(".comparison tbody th")]
                  == ["system › dark_mode"])
        self.check_view("reports-compared")

    def test_charts_show_traffic_power_and_round_trip(self):
        self.open(f"#/switch/{MAC}/charts")
        for title, words in (("Traffic", "bit/s"), ("Power drawn and budget", "370 W"),
                             ("Round trip of a check-in", "ms")):
            with self.subTest(chart=title):
                chart = self.find(f"svg.chart[aria-label='{title}']")
                self.assertTrue(chart.find_elements("css selector", "path.line[d^=M]"))
                self.find(".chart-place .figures td", words)
        points = len(self.all("svg[aria-label='Round trip of a check-in'] circle"))
        self.assertGreaterEqual(points, 3)
        self.check_view("charts")
