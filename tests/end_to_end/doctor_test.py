"""The doctor on a simulated switch whose cloud is the lab: one thing is wrong at a time, and it must say
so of that step and of no other."""
import json
import os
import pathlib
import socket
import subprocess
import threading

from end_to_end import BUILD, EndToEnd
from workbench import KEY, MAC, SECRET

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCTOR = BUILD / "sim/vx_cloud_doctor_sim"
SUFFIX = MAC.replace(":", "").lower()

# What cannot be looked at while another step is wrong.
BEHIND = {
    "identity": ["account", "keeper"],
    "settings": ["checkin-name", "fallback-name", "keeper-name"],
    "checkin-name": ["checkin-connect"],
    "fallback-name": ["fallback-connect"],
    "keeper-name": ["keeper-connect"],
    "checkin-connect": ["certificate"],
    "fallback-connect": ["time", "fallback-certificate"],
    "time": ["clock"],
    "clock": ["certificate", "fallback-certificate", "checkin"],
    "trust": ["certificate", "fallback-certificate"],
    "account": ["checkin"],
    "certificate": ["checkin"],
    "report": ["checkin"],
    "keeper-connect": ["keeper"],
}
# A clock that nobody can be asked about does not spoil what a wrong one would.
NOT_SPOILED_UNSEEN = {"certificate", "fallback-certificate", "checkin"}


def skipped_behind(steps):
    """All steps that are skipped when `steps` are wrong."""
    skipped = set()
    todo = [(step, True) for step in steps]
    while todo:
        step, seen = todo.pop()
        for other in BEHIND.get(step, []):
            if step == "clock" and not seen and other in NOT_SPOILED_UNSEEN:
                continue
            if other not in skipped:
                skipped.add(other)
                todo.append((other, False))
    return skipped


class DoctorTest(EndToEnd):
    """No agent runs unless a test starts one: a process of the test's stands in for it."""

    def setUp(self):
        super().setUp()
        pid_file = self.switch.root / "var/run/vx_cloud.pid"
        pid_file.parent.mkdir(parents=True)
        pid_file.write_text(str(os.getpid()))

    def doctor(self, *options):
        result = subprocess.run(
            [DOCTOR, "--root", self.switch.root, "--scenario", self.switch.scenario, *options],
            capture_output=True, text=True, timeout=120, check=False)
        self.assertNotIn("Sanitizer", result.stderr)
        self.assertNotIn("runtime error", result.stderr)
        return result

    def lines(self, *options):
        """By step; and the exit status is what the lines say."""
        result = self.doctor("--json", *options)
        lines = {line["step"]: line for line in json.loads(result.stdout)}
        wrong = any(line["verdict"] == "wrong" for line in lines.values())
        self.assertEqual(1 if wrong else 0, result.returncode)
        return lines

    def assert_found(self, found, *options, **verdicts):
        """`found`: the finding of each step that is not well. `verdicts`: those that are not "wrong".
        Returns the lines."""
        lines = self.lines(*options)
        seen = {name: line.get("finding") for name, line in lines.items()
                if line["verdict"] in ("wrong", "warning")}
        self.assertEqual(found, seen)
        for step in found:
            verdict = verdicts.get(step.replace("-", "_"), "wrong")
            self.assertEqual(verdict, lines[step]["verdict"], step)
            self.assertTrue(lines[step]["remedy"], step)
        skipped = {name for name, line in lines.items() if line["verdict"] == "skipped"}
        blocking = [step for step in found
                    if verdicts.get(step.replace("-", "_")) != "warning" or step in self.optional]
        self.assertEqual(skipped_behind(blocking), skipped)
        return lines

    optional = {"fallback-name", "fallback-connect", "time", "fallback-certificate"}

    def cloud(self, **settings):
        """The scenario with other cloud settings."""
        scenario = json.loads(self.switch.scenario.read_text())
        scenario["cloud"].update(settings)
        self.switch.scenario.write_text(json.dumps(scenario))


class Healthy(DoctorTest):
    def test_a_switch_that_lacks_nothing_has_no_line_to_mend(self):
        lines = self.assert_found({})
        self.assertEqual("holds", lines["keeper"]["finding"])
        self.assertEqual("accepted", lines["checkin"]["finding"])

    def test_the_secret_is_never_shown_and_of_the_key_two_letters_are(self):
        for options in ((), ("--json",)):
            shown = self.doctor(*options).stdout
            self.assertNotIn(SECRET, shown)
            self.assertNotIn(KEY, shown)
            self.assertIn(f"{KEY[0]}...{KEY[-1]}", shown)

    def test_settings_that_come_back_are_not_applied_and_come_again(self):
        number = self.lab.queue_settings({"system": {"summary_info": {"device_name": "changed"}}})
        lines = self.assert_found({})
        self.assertIn("settings", lines["checkin"]["detail"])
        self.assertFalse((self.switch.root / "etc/startup-config.json").exists())
        states = {s["config_seqno"]: s["state"]
                  for s in self.lab.ask("GET", f"/switches/{MAC}/settings")}
        self.assertNotEqual("acknowledged", states[number])

    def test_beside_a_running_agent_the_poll_gives_way(self):
        self.start()
        lines = self.assert_found({})
        self.assertIn(lines["keeper"]["finding"], ("gave-way", "holds"))
        self.assertIn("since", lines["agent"]["detail"])

    def test_what_can_be_found_is_the_page_of_the_manual(self):
        page = (ROOT / "docs/doctor.md").read_text()
        self.assertIn(self.doctor("--explain").stdout, page)

    def test_an_unknown_option_is_refused(self):
        result = self.doctor("--mend")
        self.assertEqual(2, result.returncode)
        self.assertIn("usage:", result.stderr)


class TheAgent(DoctorTest):
    def pid_file(self, text):
        (self.switch.root / "var/run/vx_cloud.pid").write_text(text)

    def test_one_that_never_ran(self):
        (self.switch.root / "var/run/vx_cloud.pid").unlink()
        self.assert_found({"agent": "no-pid-file"})

    def test_a_pid_file_that_was_cut(self):
        self.pid_file("")
        self.assert_found({"agent": "no-number"})

    def test_one_that_has_ended(self):
        ended = subprocess.Popen(["true"])
        ended.wait()
        self.pid_file(str(ended.pid))
        self.assert_found({"agent": "gone"})

    def test_another_program_under_its_number(self):
        process = self.switch.root / "proc" / str(os.getpid())
        process.mkdir(parents=True)
        (process / "comm").write_text("syslogd\n")
        self.assert_found({"agent": "another"})


class Settings(DoctorTest):
    def test_no_check_in_host(self):
        self.cloud(checkin_host="")
        self.assert_found({"settings": "no-checkin-host"})

    def test_a_url_for_a_host(self):
        self.cloud(checkin_host="https://cloud.example/")
        self.assert_found({"settings": "bad-host"})

    def test_no_fallback_host(self):
        self.cloud(fallback_host="")
        lines = self.lines()
        self.assertEqual("no-fallback-host", lines["settings"]["finding"])
        self.assertEqual("warning", lines["settings"]["verdict"])
        for step in ("fallback-name", "fallback-connect", "time", "clock", "fallback-certificate"):
            self.assertEqual("skipped", lines[step]["verdict"])
        self.assertEqual("accepted", lines["checkin"]["finding"])

    def test_no_keeper_host(self):
        self.cloud(connkeeper_host="")
        lines = self.lines()
        self.assertEqual("no-keeper-host", lines["settings"]["finding"])
        self.assertEqual("skipped", lines["keeper"]["verdict"])

    def test_an_interval_that_no_cloud_may_set(self):
        self.cloud(checkin_interval=59)
        self.reports_are = None
        self.assert_found({"settings": "bad-interval"}, settings="warning")

    def test_each_setting_that_the_platform_does_not_tell(self):
        for call in ("checkin_host", "fallback_host", "connkeeper_host", "checkin_interval"):
            with self.subTest(call=call):
                name = f"sal_vxcloud_{call}_get"
                lines = self.assert_found(
                    {"settings": "store-fails"}, "--fault", f"platform:{name}=7")
                self.assertEqual(f"{name} = 7", lines["settings"]["detail"])

    def test_a_mac_that_the_platform_does_not_tell(self):
        self.assert_found({"identity": "no-mac"}, "--fault", "platform:sal_sys_macAddr_get=7")

    def test_a_sequence_number_that_the_platform_does_not_tell(self):
        lines = self.lines("--fault", "platform:sal_vxcloud_seqno_get#1+=7")
        self.assertEqual("unreadable", lines["saved"]["finding"])
        self.assertEqual(["saved"], [n for n, l in lines.items() if l["verdict"] == "wrong"])


class Account(DoctorTest):
    def stored(self, **account):
        """As the switch's store holds it, which a scenario cannot say."""
        self.cloud()
        scenario = json.loads(self.switch.scenario.read_text())["cloud"]
        scenario.update(account)
        (self.switch.root / "etc/cloud.json").write_text(json.dumps(scenario))

    def test_none_is_stored(self):
        self.stored(key="", secret="")
        self.assert_found({"account": "none"})

    def test_a_plain_secret(self):
        self.stored(secret=SECRET)
        lines = self.assert_found({"account": "plain"})
        self.assertIn("secret", lines["account"]["detail"])

    def test_another_switchs_account(self):
        self.stored(key=KEY + "021b2c3d4e60")
        self.assert_found({"account": "foreign"})

    def test_a_key_that_no_header_line_may_hold(self):
        self.stored(key="lab\r\nX-Evil: 1" + SUFFIX)
        self.assert_found({"account": "unprintable"})

    def test_an_account_that_the_platform_does_not_tell(self):
        for call in ("key", "secret"):
            with self.subTest(call=call):
                self.assert_found(
                    {"account": "store-fails"}, "--fault", f"platform:sal_vxcloud_{call}_get=7")

    def test_an_account_that_the_cloud_does_not_know(self):
        self.cloud(key="other-key" + SUFFIX)
        lines = self.assert_found({"checkin": "refused"})
        self.assertIn("key:", lines["checkin"]["detail"])

    def test_a_wrong_secret(self):
        self.cloud(secret="other-secret" + SUFFIX)
        lines = self.assert_found({"checkin": "refused"})
        self.assertIn("signature:", lines["checkin"]["detail"])


class Network(DoctorTest):
    def test_a_name_that_nobody_knows(self):
        for host, step in (("checkin_host", "checkin-name"), ("connkeeper_host", "keeper-name")):
            with self.subTest(host=host):
                before = json.loads(self.switch.scenario.read_text())["cloud"][host]
                self.cloud(**{host: "nobody.invalid:1"})
                lines = self.lines()
                self.assertEqual("wrong", lines[step]["verdict"])
                self.assertIn(lines[step]["finding"], ("no-such-name", "no-name-server"))
                self.assertEqual([step], [n for n, l in lines.items() if l["verdict"] == "wrong"])
                self.cloud(**{host: before})

    def test_a_fallback_name_that_nobody_knows_is_a_warning(self):
        self.cloud(fallback_host="nobody.invalid:1")
        lines = self.lines()
        self.assertEqual("warning", lines["fallback-name"]["verdict"])
        self.assertEqual("skipped", lines["time"]["verdict"])
        self.assertEqual("accepted", lines["checkin"]["finding"])

    def test_a_check_in_host_that_refuses(self):
        self.lab.misbehave("refuse", listener="checkin", port=self.lab.ports["https"][0])
        self.assert_found({"checkin-connect": "refused"})

    def test_a_fallback_host_that_refuses(self):
        self.lab.misbehave("refuse", listener="checkin", port=self.lab.ports["https"][1])
        self.assert_found({"fallback-connect": "refused"}, fallback_connect="warning")

    def test_a_keeper_that_refuses(self):
        self.lab.misbehave("refuse", listener="keeper", port=self.lab.ports["keeper"][0])
        self.assert_found({"keeper-connect": "refused"})


class Time(DoctorTest):
    def assert_time(self, finding):
        self.assert_found({"time": finding}, time="warning")

    def test_a_service_that_fails(self):
        self.lab.misbehave("status", listener="plain", status=500)
        self.assert_time("status")

    def test_a_service_that_hangs_up(self):
        self.lab.misbehave("reset", listener="plain")
        self.assert_time("no-answer")

    def test_an_answer_that_is_cut(self):
        self.lab.misbehave("truncate", listener="plain")
        self.assert_time("no-answer")

    def test_an_answer_that_is_damaged_is_never_another_step(self):
        self.lab.misbehave("corrupt", listener="plain")
        lines = self.lines()
        odd = {n for n, l in lines.items() if l["verdict"] in ("wrong", "warning")}
        self.assertLessEqual(odd, {"time", "clock"})

    def test_a_portal_in_the_way(self):
        with Portal() as portal:
            self.cloud(fallback_host=f"127.0.0.1:{portal.port}")
            lines = self.lines()
            self.assertEqual("portal", lines["time"]["finding"])
            self.assertIn("/login", lines["time"]["detail"])

    def test_a_clock_that_is_wrong_is_told_by_how_much(self):
        for seconds, direction in ((-4000, "behind"), (4000, "ahead")):
            with self.subTest(seconds=seconds):
                self.lab.ask("PUT", "/config", {"clock_offset": -seconds})
                lines = self.assert_found({"clock": "wrong"})
                self.assertRegex(lines["clock"]["detail"], rf"(3999|4000|4001) s {direction}")

    def test_a_scenarios_wrong_clock(self):
        scenario = json.loads(self.switch.scenario.read_text())
        scenario["hardware"]["clock_ahead_seconds"] = -86400
        self.switch.scenario.write_text(json.dumps(scenario))
        lines = self.assert_found({"clock": "wrong"})
        self.assertRegex(lines["clock"]["detail"], r"8(6399|6400|6401) s behind")

    def test_a_service_that_is_slow_is_none_the_worse(self):
        self.lab.misbehave("slow", listener="plain", delay_ms=5)
        self.assert_found({})

    def test_a_clock_that_drifts(self):
        self.lab.ask("PUT", "/config", {"clock_offset": 200})
        self.assert_found({"clock": "drifts"}, clock="warning")

    def test_nothing_sets_the_clock(self):
        self.lab.misbehave("expired", listener="checkin")
        self.lines("--fault", "platform:none")
        self.assertNotIn("clock_settime", "\n".join(self.switch.trace()))


class Trust(DoctorTest):
    def certificates(self):
        return self.switch.root / "etc/ssl/certs"

    def test_no_directory(self):
        self.lines()
        for file in self.certificates().iterdir():
            file.unlink()
        self.assert_found({"trust": "no-directory"}, "--fault", "file:/etc/ssl/certs/=1")

    def test_an_empty_directory(self):
        for file in self.certificates().iterdir():
            file.unlink()
        self.assert_found({"trust": "empty"})

    def test_a_directory_without_hashed_names(self):
        for file in self.certificates().iterdir():
            file.rename(file.with_name("authority.crt"))
        self.assert_found({"trust": "not-hashed"})

    def bad_certificate(self, mode, finding):
        self.lab.misbehave(mode, listener="checkin", port=self.lab.ports["https"][0])
        return self.assert_found({"certificate": finding})

    def test_an_expired_certificate(self):
        self.bad_certificate("expired", "expired")

    def test_an_expired_certificate_while_nobody_tells_the_time(self):
        self.lab.misbehave("status", listener="plain", status=500)
        self.lab.misbehave("expired", listener="checkin", port=self.lab.ports["https"][0])
        self.assert_found({"time": "status", "certificate": "expired-unsure"}, time="warning")

    def test_a_certificate_of_an_unknown_authority(self):
        lines = self.bad_certificate("unknown-ca", "unknown-authority")
        self.assertIn("Unknown authority", lines["certificate"]["detail"])

    def test_a_certificate_for_another_host(self):
        lines = self.bad_certificate("wrong-name", "wrong-name")
        self.assertIn("elsewhere", lines["certificate"]["detail"])

    def test_a_handshake_that_breaks_off(self):
        self.bad_certificate("reset", "broken-off")

    def test_the_fallback_hosts_certificate_is_a_warning(self):
        self.lab.misbehave("unknown-ca", listener="checkin", port=self.lab.ports["https"][1])
        self.assert_found({"fallback-certificate": "unknown-authority"},
                          fallback_certificate="warning")


class CheckIn(DoctorTest):
    def test_a_cloud_that_fails(self):
        self.lab.misbehave("status", listener="checkin", status=503)
        self.assert_found({"checkin": "server-fails"})

    def test_a_cloud_that_refuses(self):
        self.lab.misbehave("status", listener="checkin", status=403)
        self.assert_found({"checkin": "refused"})

    def test_a_reply_that_is_cut(self):
        self.lab.misbehave("truncate", listener="checkin")
        self.assert_found({"checkin": "cut-off"})

    def test_a_reply_that_is_damaged(self):
        self.lab.misbehave("corrupt", listener="checkin")
        self.assert_found({"checkin": "no-document"})

    def test_a_slow_cloud_is_none_the_worse(self):
        self.lab.misbehave("slow", listener="checkin", delay_ms=20)
        self.assert_found({})

    def test_sections_that_cannot_be_read(self):
        lines = self.lines("--fault", "platform:sal_switch_maxFrameSize_get=7")
        self.assertEqual("sections-fail", lines["report"]["finding"])
        self.assertIn(" 7", lines["report"]["detail"])
        self.assertEqual("accepted", lines["checkin"]["finding"])
        self.reports_are = "failing"


class Keeper(DoctorTest):
    def test_one_that_refuses_the_poll(self):
        self.lab.misbehave("status", listener="keeper", status=403)
        self.assert_found({"keeper": "status"})

    def test_one_that_hangs_up(self):
        self.lab.misbehave("reset", listener="keeper")
        self.assert_found({"keeper": "hangs-up"})

    def test_one_that_spoils_answers_is_not_seen_by_a_poll_that_is_held(self):
        for mode in ("truncate", "slow", "corrupt"):
            with self.subTest(mode=mode):
                self.lab.misbehave(mode, listener="keeper")
                self.assert_found({})
                self.lab.behave()

    def test_an_action_that_is_taken_is_told(self):
        self.lab.push(action="checkin")
        lines = self.assert_found({"keeper": "took-action"}, keeper="warning")
        self.assertIn("checkin", lines["keeper"]["detail"])

    def test_a_portal_in_the_way(self):
        with Portal() as portal:
            self.cloud(connkeeper_host=f"127.0.0.1:{portal.port}")
            self.assert_found({"keeper": "portal"})

    def test_one_that_answers_at_once(self):
        with Portal(b"HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\n{}") as keeper:
            self.cloud(connkeeper_host=f"127.0.0.1:{keeper.port}")
            (self.switch.root / "var/run/vx_cloud.pid").unlink()
            self.assert_found({"agent": "no-pid-file", "keeper": "at-once"}, keeper="warning")


class Resources(DoctorTest):
    def test_little_memory(self):
        self.lines()
        (self.switch.root / "proc/meminfo").write_text("MemFree: 900 kB\nMemAvailable: 8000 kB\n")
        self.assert_found({"memory": "little"}, memory="warning")

    def test_memory_that_nobody_tells(self):
        lines = self.lines("--fault", "file:/proc/meminfo=1")
        self.assertEqual(("unknown", "warning"),
                         (lines["memory"]["finding"], lines["memory"]["verdict"]))

    def test_room_that_nobody_tells(self):
        lines = self.lines("--fault", "file:/tmp=1")
        self.assertEqual(("unknown", "warning"),
                         (lines["space"]["finding"], lines["space"]["verdict"]))


class Portal:
    """A server on loopback that answers everybody with the same words."""

    def __init__(self, answer=b"HTTP/1.1 302 Found\r\nLocation: http://portal.example/login\r\n"
                              b"Content-Length: 0\r\nConnection: close\r\n\r\n"):
        self.answer = answer
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]

    def __enter__(self):
        threading.Thread(target=self.serve, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.socket.close()

    def serve(self):
        while True:
            try:
                peer, _ = self.socket.accept()
            except OSError:
                return
            with peer:
                peer.settimeout(5)
                try:
                    if peer.recv(4096):
                        peer.sendall(self.answer)
                except OSError:
                    pass



