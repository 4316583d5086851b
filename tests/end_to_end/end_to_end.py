"""A lab cloud and a switch for one test, in a folder of its own."""
import os
import pathlib
import signal
import tempfile
import unittest

import wire_schema
import workbench
from workbench import Lab, Switch

BUILD = pathlib.Path(os.environ["VX_BUILD"])
LAB_PROGRAM = BUILD / "lab/lab_cloud"
SWITCH_PROGRAM = BUILD / "sim/vx_cloud_sim"


class EndToEnd(unittest.TestCase):
    """`self.lab` runs; `self.switch` does not yet. At the end the agent must still be running,
    unless the test stopped it, and must not have been complained about by a sanitizer; and every
    report of it must be a whole one by the schema."""

    scenario = {}
    speed = 150
    lab_options = ()
    reports_are = "whole" # None: a test had the switch store what no report may say

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="vx_end_to_end_")
        self.addCleanup(self.folder.cleanup)
        self.lab = Lab(LAB_PROGRAM, self.path("cloud"), options=self.lab_options)
        self.addCleanup(self.lab.stop)
        self.switch = Switch(SWITCH_PROGRAM, self.path("switch"), self.lab, self.speed,
                             scenario=self.scenario)
        self.addCleanup(self.check_reports)
        self.addCleanup(self.stop_switch)

    def path(self, name):
        return pathlib.Path(self.folder.name) / name

    def stop_switch(self):
        if self.switch.process is None:
            return
        alive = self.switch.running()
        self.switch.stop(signal.SIGKILL)
        log = (self.switch.root / "agent.log").read_text(errors="replace")
        self.assertTrue(alive, f"the agent ended by itself:\n{log}")
        self.assertNotIn("Sanitizer", log)
        self.assertNotIn("runtime error", log)

    def check_reports(self):
        for number, report in self.lab.reports() if self.reports_are else ():
            with self.subTest(report=number):
                self.assertEqual([], list(wire_schema.report_faults(report, self.reports_are)))

    # --- Short words for what tests do.

    def start(self):
        """The switch is started and has checked in; the id of that event."""
        self.switch.start()
        return self.lab.event("checkin", 0, 40)["id"]

    def next_checkin(self, **details):
        after = self.lab.last_event()
        return self.event("checkin", after, **details)

    def event(self, kind, after=0, seconds=30, **details):
        return self.lab.event(kind, after, seconds, lambda event: all(
            event.get(key) == value for key, value in details.items()))

    def apply(self, document):
        """Delivers settings, waits for their acknowledgement, returns the report with it."""
        number = self.lab.queue_settings(document)
        self.event("settings-acknowledged", config_seqno=number)
        return self.lab.report()

    def wait(self, what, condition, seconds=20):
        return workbench.wait_until(what, condition, seconds)

    def report_until(self, what, condition, seconds=30):
        """The first of the coming reports that meets a condition."""
        def met():
            report = self.lab.report()
            return report if condition(report) else None
        return self.wait(what, met, seconds)
