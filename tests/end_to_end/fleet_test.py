"""Some switches at one cloud, as `./run --fleet` starts them."""
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from end_to_end import BUILD, LAB_PROGRAM
import fleet
from workbench import Lab

PROGRAM = pathlib.Path(fleet.__file__)


def processes_of(folder):
    """Those that were given something in a folder."""
    found = []
    for entry in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        try:
            if str(folder).encode() in entry.read_bytes():
                found.append(int(entry.parent.name))
        except OSError:
            pass # it has ended meanwhile
    return [pid for pid in found if pid != os.getpid()]


class Fleet(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vx_fleet_")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def start(self, count, *options):
        return subprocess.Popen(
            [sys.executable, "-B", str(PROGRAM), "--build", str(BUILD), "--state",
             str(self.folder / "state"), "--fleet", str(count), *options],
            stdout=subprocess.PIPE, text=True)

    def end(self, process):
        output, _ = process.communicate(timeout=120)
        self.assertEqual([], processes_of(self.folder), output)
        self.assertFalse((self.folder / "state/fleet").exists())
        return output

    def test_every_switch_checks_in_is_configured_and_pushed_to_and_none_is_left(self):
        process = self.start(3, "--speed", "300", "--interval", "300", "--minutes", "0.12",
                             "--json")
        output = self.end(process)
        self.assertEqual(0, process.returncode, output)
        figures = json.loads(output.splitlines()[-1])
        lab = figures["lab"]
        self.assertEqual((3, 3), (figures["switches"], figures["checked_in"]))
        self.assertGreaterEqual(figures["fewest"], 2)
        self.assertEqual((0, 0), (figures["refused"], figures["unanswered"]))
        # One of each switch may be on its way when they are counted.
        self.assertAlmostEqual(lab["checkin"], figures["checkins"], delta=3)
        self.assertGreaterEqual(lab["settings-acknowledged"], 3)
        self.assertGreaterEqual(lab["action-answered"], 3)
        self.assertIn(lab["waiting_polls"], (1, 2, 3))  # one that obeys is between two polls
        self.assertGreater(figures["memory"], 1e6)

    def test_an_interrupted_fleet_says_what_it_did_and_leaves_nothing(self):
        process = self.start(2, "--speed", "300")
        for line in process.stdout:
            if " 2 have checked in" in line:
                break
        process.send_signal(signal.SIGINT)
        self.assertIn("2 switches, 2 of them checked in", self.end(process))

    def test_a_fleet_that_is_killed_takes_its_processes_along(self):
        process = self.start(1, "--speed", "300")
        process.stdout.readline()
        self.assertNotEqual([process.pid], processes_of(self.folder))
        process.kill()
        process.communicate()
        end = time.monotonic() + 20
        while processes_of(self.folder) and time.monotonic() < end:
            time.sleep(0.05)
        self.assertEqual([], processes_of(self.folder))

    def test_another_cloud_gets_the_accounts_that_it_gave(self):
        lab = Lab(LAB_PROGRAM, self.folder / "cloud")
        self.addCleanup(lab.stop)
        mac = "02:AA:00:00:00:01"
        lab.ask("PUT", f"/switches/{mac}", {"key": "its-key", "secret": "its,secret"})
        accounts = self.folder / "accounts"
        accounts.write_text(f"# one\n{mac},its-key,its,secret\n")
        where = lab.cloud()
        process = self.start(1, "--speed", "300", "--minutes", "0.05", "--cloud", where.checkin,
                             "--keeper", where.keeper, "--trust", where.trust, "--accounts",
                             str(accounts), "--json")
        output, _ = process.communicate(timeout=120)
        self.assertEqual(0, process.returncode, output)
        figures = json.loads(output.splitlines()[-1])
        self.assertEqual(lab.ask("GET", f"/switches/{mac}")["reports"], figures["checkins"])
        self.assertIsNone(figures["lab"])
