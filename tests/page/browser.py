"""A headless browser on the page of a lab cloud, with a simulated switch, for the tests of a class."""
import os
import pathlib
import tempfile
import unittest

from selenium import webdriver
from selenium.common.exceptions import StaleElementReferenceException, WebDriverException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from workbench import Failed, Lab, MAC, Switch, wait_until

BUILD = pathlib.Path(os.environ["VX_BUILD"])
PICTURES = BUILD / "pictures"
AXE = BUILD / "npm/node_modules/axe-core/axe.min.js"

QUIET = ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--disable-dev-shm-usage", "--hide-scrollbars", "--force-device-scale-factor=1")

# The widths and schemes in which a page is looked at.
WIDE, NARROW = 1600, 360


def start_browser(profile):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for flag in (*QUIET, f"--user-data-dir={profile}"):
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


class PageTest(unittest.TestCase):
    """A lab cloud, a browser on its page and, unless `scenario` is None, a switch that has checked
    in. Whatever a test does, the browser's console must stay without an error."""

    scenario = {}
    speed = 60
    lab_options = ()
    refusals_expected = False  # a refused request is an error in the browser's console

    @classmethod
    def setUpClass(cls):
        PICTURES.mkdir(exist_ok=True)
        folder = tempfile.TemporaryDirectory(prefix="vx_page_")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.lab = Lab(BUILD / "lab/lab_cloud", cls.folder / "cloud", options=cls.lab_options)
        cls.addClassCleanup(cls.lab.stop)
        cls.address = f"http://127.0.0.1:{cls.lab.ports['admin']}/"
        if cls.scenario is not None:
            cls.switch = Switch(BUILD / "sim/vx_cloud_sim", cls.folder / "switch", cls.lab,
                                cls.speed, scenario=cls.scenario)
            cls.addClassCleanup(cls.switch.stop)
            cls.switch.start()
            cls.lab.event("checkin", 0, 40)
        cls.driver = start_browser(cls.folder / "profile")
        cls.addClassCleanup(cls.driver.quit)

    def setUp(self):
        self.look(WIDE)
        self.driver.get_log("browser")

    def tearDown(self):
        errors = [entry["message"] for entry in self.driver.get_log("browser")
                  if entry["level"] == "SEVERE"
                  and not (self.refusals_expected and "Failed to load resource" in entry["message"])]
        self.assertEqual([], errors)

    # --- Short words for what tests do.

    def look(self, width, dark=False, height=1000):
        """How wide the window is, and in which colours."""
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})

    def open(self, place=""):
        """A place of the page, afresh."""
        self.driver.get("about:blank")
        self.driver.get(self.address + place)

    def all(self, css):
        return self.driver.find_elements(By.CSS_SELECTOR, css)

    def wait(self, what, condition, seconds=20):
        def met():
            try:
                return condition()
            except StaleElementReferenceException:
                return None
        try:
            return wait_until(what, met, seconds)
        except Failed as failure:
            self.driver.save_screenshot(str(PICTURES / f"failed-{self.id().split('.')[-1]}.png"))
            raise Failed(f"{failure}; the page says:\n{self.script('return document.body.innerText')}") from None

    def find(self, css, text=None, seconds=20):
        """The first element that fits and, if given, holds a text; waited for."""
        def found():
            return next((element for element in self.all(css)
                         if text is None or text in (element.text or element.get_property("textContent"))),
                        None)
        return self.wait(f"{css} with {text!r}", found, seconds)

    def press(self, css, text=None):
        """Clicks what fits, which may be put anew meanwhile."""
        def pressed():
            try:
                self.find(css, text).click()
                return True
            except WebDriverException as failure:
                if "intercepted" in str(failure) or "stale" in str(failure):
                    return None
                raise
        self.wait(f"{css} with {text!r} can be pressed", pressed)

    def type_into(self, css, text):
        place = self.find(css)
        place.send_keys(Keys.CONTROL, "a")
        place.send_keys(text)

    def choose(self, css, value):
        self.find(f"{css} option[value='{value}']").click()

    def key(self, *keys):
        self.driver.switch_to.active_element.send_keys(*keys)

    def script(self, text, *arguments):
        return self.driver.execute_script(text, *arguments)

    # --- What every view must be.

    def picture(self, name, whole=True):
        """Keeps the page as a picture: of all of it, or of the window."""
        if whole:
            self.look(self.script("return innerWidth"), self.is_dark(), min(4000, max(
                700, self.script("return document.documentElement.scrollHeight"))))
        self.driver.save_screenshot(str(PICTURES / f"{name}.png"))

    def is_dark(self):
        return self.script("return matchMedia('(prefers-color-scheme: dark)').matches")

    def check_accessible(self, rules=None):
        """Without a finding of the checker, by all its rules unless some are given."""
        if self.script("return typeof axe") != "object":
            self.script(AXE.read_text())
        only = {"runOnly": {"type": "rule", "values": rules}} if rules else {
            "runOnly": ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]}
        found = self.driver.execute_async_script(
            "const [options, done] = arguments;"
            "axe.run(document, options).then(({violations, passes}) => done({passes: passes.length,"
            " faults: violations.flatMap(({id, nodes}) => nodes.map(({target, failureSummary}) =>"
            " `${id} ${target}: ${failureSummary}`))}), (failure) => done({faults: [String(failure)]}))",
            only)
        self.assertEqual([], found["faults"][:3])
        self.assertGreater(found["passes"], 0)

    def check_fits(self):
        """Nothing sticks out of the window sideways."""
        self.assertLessEqual(self.script("return document.documentElement.scrollWidth"),
                             self.script("return innerWidth"))

    def check_view(self, name):
        """Wide and narrow, light and dark: accessible, no wider than the window, a picture each."""
        for width in (WIDE, NARROW):
            for dark in (False, True):
                with self.subTest(width=width, dark=dark):
                    self.look(width, dark)
                    self.script("scrollTo(0, 0)")
                    self.check_fits()
                    self.check_accessible(["color-contrast"] if dark else None)
                    self.picture(f"{name}-{width}{'-dark' if dark else ''}")
        self.look(WIDE)
