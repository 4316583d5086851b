"""One version, told by everything that can be asked."""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["VX_BUILD"])
SOURCE = pathlib.Path(os.environ["VX_SOURCE"])
VERSION = os.environ["VX_VERSION"]
PROGRAMS = ("sim/vx_cloud_sim", "sim/vx_cloud_doctor_sim", "sim/platform_judge_sim", "lab/lab_cloud",
            "judge/cloud/cloud_judge")
SCRIPTS = ("run.py", "make_image.py", "null_platform.py")


def output_of(*command):
    return subprocess.run(command, check=True, text=True, capture_output=True, timeout=60).stdout


class Version(unittest.TestCase):
    def test_every_program_tells_its_name_and_the_version(self):
        for program in PROGRAMS:
            with self.subTest(program):
                path = BUILD / program
                self.assertEqual(f"{path.name} {VERSION}\n", output_of(path, "--version"))

    def test_every_script_tells_its_name_and_the_version(self):
        for script in SCRIPTS:
            with self.subTest(script):
                told = output_of(sys.executable, SOURCE / "tools" / script, "--version")
                self.assertEqual(f"{script} {VERSION}\n", told)

    def test_the_agent_carries_it_in_its_file(self):
        agent = (BUILD / "sim/vx_cloud_sim").read_bytes()
        self.assertEqual([f"vx_cloud {VERSION}"],
                         [what.decode() for what in re.findall(rb"@\(#\)([^\0]*)\0", agent)])

    def test_a_judgement_names_the_version_of_the_judge(self):
        with tempfile.TemporaryDirectory(prefix="vx_version_") as folder:
            subprocess.run([BUILD / "sim/platform_judge_sim", "--root", "board", "--family", "log",
                            "--json", "j", "--junit", "x", "--summary", "t"],
                           cwd=folder, check=True, capture_output=True, timeout=120)
            folder = pathlib.Path(folder)
            self.assertEqual(VERSION, json.loads((folder / "j").read_text())["version"])
            self.assertIn(f'name="version" value="{VERSION}"', (folder / "x").read_text())
            self.assertIn(f"by platform_judge {VERSION}\n", (folder / "t").read_text())

    def test_the_packages_have_it(self):
        first = (SOURCE / "debian/changelog").read_text().splitlines()[0]
        self.assertIn(f" ({VERSION}) ", first)

    def test_the_changelog_tells_of_it_first(self):
        released = re.findall(r"^## \[(\d+\.\d+\.\d+)\] - \d{4}-\d\d-\d\d$",
                              (SOURCE / "CHANGELOG.md").read_text(), re.M)
        self.assertEqual(VERSION, released[0])
