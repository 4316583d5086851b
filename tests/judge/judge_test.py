"""The judge acquits the simulated switch, convicts a library that does nothing, and tells both."""
import os
import re
import subprocess
import xml.etree.ElementTree

from judge_case import BUILD, IRREVOCABLE, JUDGE_ON_NULL, JUDGE_ON_SIM, SOURCE, JudgeCase
from make_image import make_image

NM = os.environ["VX_NM"]
JUDGE_ON_OWN_DRIVER = BUILD / "tests/judge/platform_judge_own_driver"


class Verdict(JudgeCase):
    def test_the_simulated_switch_is_acquitted(self):
        report = self.judge(JUDGE_ON_SIM, "--change", *IRREVOCABLE, status=0)
        self.assertEqual([], report["findings"])
        self.assertEqual("acquitted", report["verdict"])
        self.assertFalse((self.folder / "platform_judge.journal").exists())

    def test_a_judgement_of_reads_changes_nothing(self):
        report = self.judge(JUDGE_ON_SIM, status=0)
        self.assertEqual([], [name for name in report["calls"] if name.endswith("_set")])

    def test_a_library_that_does_nothing_is_convicted(self):
        report = self.judge(JUDGE_ON_NULL, "--change", "--timeout", "5", status=1)
        self.assert_convicted(report, "value out of range", "sys_logic_port_num_ret()")
        self.assert_convicted(report, "output not written", "sal_sys_macAddr_get()")
        self.assert_convicted(report, "value out of range", "fds_sys_version_ret()")
        self.assert_convicted(report, "value not stored", "sal_swctrl_poe_led_mode_set(")
        good = [family["family"] for family in report["families"] if family["findings"] == 0]
        self.assertLessEqual(set(good), {"restore", "port", "rate", "driver", "log"})


    def test_a_library_with_a_driver_function_of_its_own_is_convicted(self):
        report = self.judge(JUDGE_ON_OWN_DRIVER, "--family", "driver", status=1)
        self.assertEqual([("calls disagree", "dlsym(rsd_port_enable_get)")],
                         [(finding["reason"], finding["call"]) for finding in report["findings"]])


class Output(JudgeCase):
    def test_every_form_of_the_report_tells_the_same_findings(self):
        report = self.judge(JUDGE_ON_NULL, "--family", "system", "--junit", "report.xml",
                            "--summary", "ticket.txt", status=1)
        suite = xml.etree.ElementTree.parse(self.folder / "report.xml").getroot()
        told = "".join(failure.text for failure in suite.iter("failure"))
        ticket = (self.folder / "ticket.txt").read_text()
        self.assertTrue(report["findings"])
        for finding in report["findings"]:
            for text in (told, ticket, self.output):
                for part in ("reason", "call", "says", "came"):
                    self.assertIn(finding[part], text)
        self.assertIn("--family system", ticket)
        self.assertEqual(str(len(list(suite.iter("failure")))), suite.get("failures"))

    def test_a_wrong_command_line_is_told(self):
        for options in (["--family", "none"], ["--unknown"], ["word"], ["--timeout", "0"]):
            with self.subTest(options=options):
                self.assertRaises(FileNotFoundError, self.judge, JUDGE_ON_SIM, *options, status=2)


class Coverage(JudgeCase):
    """The judge makes every call that the agent makes, and every other of the contract."""

    AGENT = ("core", "transport", "sections", "driver", "json", "base")

    def contract(self):
        """The functions and tables that the headers of platform/ declare."""
        names = set()
        for header in (SOURCE / "platform").glob("*.h"):
            text = re.sub(r"//.*", "", header.read_text())
            names.update(re.findall(r"^(?:const )?\w+\*? (\w+)\([^;{]*\);", text, re.M))
            names.update(re.findall(r"^extern const \w+ (\w+);", text, re.M))
        return names

    def called_by_agent(self):
        archives = [BUILD / folder / f"libvx_{folder}.a" for folder in self.AGENT]
        lines = subprocess.run([NM, "--undefined-only", *archives], check=True, text=True,
                               capture_output=True).stdout.split("\n")
        return {line.split()[-1] for line in lines if line.strip() and not line.endswith(":")}

    def image(self):
        """The URL of a firmware image, which lies on the board."""
        (self.folder / "board/srv").mkdir(parents=True)
        (self.folder / "board/srv/image.bix").write_bytes(make_image("9.9.9"))
        return "file:///srv/image.bix"

    def test_no_call_of_the_agent_is_missing_from_the_judge(self):
        report = self.judge(JUDGE_ON_SIM, "--change", *IRREVOCABLE, "--firmware", self.image(),
                            status=0)
        saves = self.judge(JUDGE_ON_SIM, "--restart-test", status=0)
        report["calls"].update(saves["calls"])
        made = {name.split("[")[0].split(".")[0] for name in report["calls"]}
        contract = self.contract()
        agent = self.called_by_agent() & contract
        self.assertGreater(len(agent), 150)
        self.assertEqual(set(), agent - made)
        self.assertEqual(set(), contract - made)

