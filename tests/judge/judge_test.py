"""The judge acquits the simulated switch, convicts a library that does nothing, and tells both."""
import json
import os
import re
import subprocess
import xml.etree.ElementTree

from judge_case import BUILD, IRREVOCABLE, JUDGE_ON_NULL, JUDGE_ON_SIM, SOURCE, JudgeCase
from make_image import make_image

NM = os.environ["VX_NM"]
JUDGE_ON_OWN_DRIVER = BUILD / "tests/judge/platform_judge_own_driver"


# A switch on which something of everything is set.
BUSY_SWITCH = {
    "hardware": {
        "logical_ports": 96,
        "lldp": {"neighbours": [
            {"port": 3, "chassis_id": "02:11:22:33:44:55", "port_id": "gi7", "ttl": 120},
            {"port": 3, "chassis_id": "02:11:22:33:44:56", "port_id": "gi8", "ttl": 120}]},
        "stp": {"root": {"heard": True, "priority": 4096, "mac": "02:00:00:00:00:01",
                         "path_cost": 20000, "port": 3}},
        "mac_table": {"learned": [
            {"mac": "02:AA:00:00:00:09", "vlan": 7, "ports": "4", "learned": True},
            {"mac": "02:AA:00:00:00:01", "vlan": 1, "ports": "0,4-6"}]},
        "poe": {"budget": 100, "ports": [{"demand": 120, "class": 3}, {"demand": 60, "class": 2}]},
        "acl": {"lists": 2, "entries": 8}},
    "config": {
        "vlans": {"entries": [{"id": 1, "name": "default", "untagged": "0-95"},
                              {"id": 7, "name": "seven", "tagged": "0-3,9", "untagged": "5"},
                              {"id": 4094, "name": "last", "tagged": "1"}],
                  "management": 7, "pvid": [{"vid": 7}]},
        "mac_table": {"static": [{"mac": "02:AA:00:00:00:77", "vlan": 7, "ports": "3"}]},
        "trunks": {"groups": [{"lacp": True, "members": "1,2,8"},
                              {"lacp": False, "members": "20-22"}]},
        "mirrors": {"groups": [{"on": True, "target": 30, "ingress": 1, "rx": "3", "tx": "4"}]},
        "acl": {"lists": [{"name": "web", "type": 2, "entries": []}]},
        "voice_vlan": {"vid": 7, "mode": 1},
        "snmp": {"targets": [{"host": "192.0.2.7", "version": 1, "type": 1, "community": "public",
                              "udp": 162, "timeout": 15, "retry": 3}]},
        "igmp": {"enable": True, "version": 3},
        "stp": {"enable": True},
        "qos": {"on": False}}}


class Verdict(JudgeCase):
    def test_the_simulated_switch_is_acquitted(self):
        report = self.judge(JUDGE_ON_SIM, "--change", *IRREVOCABLE, status=0)
        self.assertEqual([], report["findings"])
        self.assertEqual("acquitted", report["verdict"])
        self.assertFalse((self.folder / "platform_judge.journal").exists())

    def test_a_switch_of_any_size_and_state_is_acquitted(self):
        for scenario in (BUSY_SWITCH, {"hardware": {"logical_ports": 11}}):
            (self.folder / "scenario.json").write_text(json.dumps(scenario))
            report = self.judge(JUDGE_ON_SIM, "--scenario", "scenario.json", "--change", status=0)
            self.assertEqual([], report["findings"])

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

