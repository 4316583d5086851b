"""The example of a platform library, written from the guide and the headers: the judge acquits it,
and with it the agent checks in to the lab and applies its settings."""
import pathlib
import shutil
import signal

import wire_schema
from judge_case import BUILD, IRREVOCABLE, JudgeCase
from workbench import Lab, Process, wait_until

JUDGE = BUILD / "examples/platform_judge_twelve_ports"
AGENT = BUILD / "examples/vx_cloud_twelve_ports"
MAC = "02:00:00:12:00:01"
KEY = "key"
SECRET = "secret"


class Example(JudgeCase):
    def test_the_judge_acquits_it(self):
        report = self.judge(JUDGE, "--change", *IRREVOCABLE, status=0)
        self.assertEqual([], report["findings"])
        self.assertIn("there is no /dev/ski: the driver is not judged", report["remarks"])
        self.assertEqual(len(set(report["remarks"])), len(report["remarks"]))

    def start_agent(self, lab):
        root = self.folder / "switch"
        shutil.copytree(lab.ports["ca_dir"], root / "etc/ssl/certs")
        for folder in ("tmp", "var/run"):
            (root / folder).mkdir(parents=True)
        suffix = MAC.replace(":", "").lower()
        agent = Process(
            [str(AGENT), str(root), f"localhost:{lab.ports['https'][0]}",
             f"localhost:{lab.ports['keeper'][0]}", KEY + suffix, SECRET + suffix],
            root / "agent.log")
        self.addCleanup(agent.stop, signal.SIGKILL)
        return agent

    def test_with_it_the_agent_checks_in_and_applies_settings(self):
        lab = Lab(BUILD / "lab/lab_cloud", self.folder / "cloud",
                  options=("--account", f"{MAC},{KEY},{SECRET}"))
        self.addCleanup(lab.stop)
        agent = self.start_agent(lab)
        first = lab.event("checkin", 0, 40)
        report = lab.ask("GET", f"/switches/{MAC}/report")
        self.assertEqual([], list(wire_schema.report_faults(report, "whole")))
        self.assertEqual(20, len(report["system"]["ports"]))
        settings = {"system": {"jumbo_frames": {"size": 9216}}}
        number = lab.ask("POST", f"/switches/{MAC}/settings", settings)["config_seqno"]
        wait_until("the settings are acknowledged", lambda: lab.ask(
            "GET", f"/switches/{MAC}/report")["system"]["cloud"]["config_seqno"] == number, 60)
        report = lab.ask("GET", f"/switches/{MAC}/report")
        self.assertEqual(9216, report["system"]["jumbo_frames"]["size"])
        self.assertTrue(agent.running())
        log = pathlib.Path(agent.log).read_text(errors="replace")
        self.assertNotIn("Sanitizer", log)
        self.assertNotIn("runtime error", log)
        self.assertLess(first["id"], lab.last_event())
