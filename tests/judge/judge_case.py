"""The judge's programs, run in a folder of their own."""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["VX_BUILD"])
SOURCE = pathlib.Path(os.environ["VX_SOURCE"])
JUDGE_ON_SIM = BUILD / "sim/platform_judge_sim"
JUDGE_ON_NULL = BUILD / "tests/judge/platform_judge_null"
ON_SIM = ("platform_judge_sim", "platform_judge_habits")

# What cannot be put back, as far as a simulated switch is concerned.
IRREVOCABLE = ("--unread-settings", "--poe-reset", "--clear-counters", "--cable-test", "--services",
               "--static-macs", "--factory-defaults", "--kill", "--reboot")


class JudgeCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vx_judge_")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def command(self, program, *options):
        board = ("--root", "board") if program.name in ON_SIM else ()
        return [program, *board, "--json", "report.json", *options]

    def judge(self, program, *options, status, **environment):
        """The report of one run, which must exit with `status`."""
        run = subprocess.run(self.command(program, *options), cwd=self.folder, text=True,
                             capture_output=True, timeout=240, env={**os.environ, **environment})
        self.assertEqual(status, run.returncode, run.stdout[-6000:] + run.stderr[-3000:])
        self.assertNotIn("Sanitizer", run.stderr)
        self.output = run.stdout
        return json.loads((self.folder / "report.json").read_text())

    def assert_convicted(self, report, reason, call):
        found = [(finding["reason"], finding["call"]) for finding in report["findings"]]
        self.assertTrue(
            any(reason == why and call in made for why, made in found),
            f"{call} was not convicted of '{reason}', but of {found}")
