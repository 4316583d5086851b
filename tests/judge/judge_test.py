"""The judge acquits the simulated switch, convicts a library that does nothing, and tells both."""
import xml.etree.ElementTree

from judge_case import IRREVOCABLE, JUDGE_ON_NULL, JUDGE_ON_SIM, JudgeCase


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
