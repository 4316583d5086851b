"""Five hundred switches and a thousand reports."""
from concurrent.futures import ThreadPoolExecutor
import time

import fleet
from browser import PageTest

SWITCHES = 500


class Fleet(PageTest):
    scenario = None
    lab_options = ("--quiet",)

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        context = fleet.trusting(cls.lab)

        def live(number):
            mac = fleet.mac_of(number)
            cls.lab.ask("PUT", f"/switches/{mac}", {"key": "lab-key", "secret": "lab-secret"})
            for seqno in (1, 2):
                assert fleet.check_in(cls.lab, context, mac, fleet.small_report(number, seqno)) == 200
        with ThreadPoolExecutor(4) as pool:
            list(pool.map(live, range(SWITCHES)))

    def rows(self):
        return len(self.all("tr[data-mac]"))

    def test_the_list_comes_in_pages_and_is_searched(self):
        self.open()
        self.find(".filters", f"On the cloud {SWITCHES}")
        self.assertEqual(50, self.rows())
        self.assertIn("1 to 50 of 501", self.find(".pages").text)
        self.press(".pages button", "Next")
        self.find(".pages", "51 to 100 of 501")
        self.check_view("switches-500")
        self.type_into("input[type=search]", "floor-7-")
        self.wait("ten floors", lambda: self.rows() == 10)
        self.type_into("input[type=search]", "1.2.0")
        self.find(".filters", f"All {len(range(2, SWITCHES, 3))}")

    def test_a_view_is_there_soon_and_small(self):
        # A bound for a slow machine, not a figure: a list that took them all would be far above.
        for place in ("", "#/events", f"#/switch/{fleet.mac_of(7)}/reports"):
            with self.subTest(place=place):
                self.open(place)
                self.find("tr[data-mac], .event, tr[data-report]")
                begin = time.monotonic()
                self.script("location.hash = '#/nothing'")
                self.find("h1", "There is nothing here")
                self.script("location.hash = arguments[0]", place or "#/")
                self.find("tr[data-mac], .event, tr[data-report]")
                self.assertLess(time.monotonic() - begin, 5)
                self.assertLess(self.script("return document.querySelectorAll('*').length"), 4000)
