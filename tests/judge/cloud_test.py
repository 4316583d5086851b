"""The judge of clouds: the lab is acquitted, and with one bad habit it is convicted of that alone."""
import concurrent.futures
import json
import pathlib
import re
import signal
import socket
import subprocess
import tempfile
import threading
import unittest
import xml.etree.ElementTree

from judge_case import BUILD, SOURCE
from workbench import KEY, Lab, MAC, SECRET
import wire_schema

JUDGE = BUILD / "judge/cloud/cloud_judge"
LAB = BUILD / "lab/lab_cloud"
LENIENT_LAB = BUILD / "tests/judge/lenient_lab"

# Each bad habit, in which family it shows, and every finding that it makes there.
HABITS = """
overlook malformed:                                  | refusals | a header on two lines: taken; no HTTP at all: taken
overlook scheme:                                     | refusals | plain HTTP: taken
overlook method:                                     | refusals | GET: taken; PUT: taken
overlook method: the method is GET                   | refusals | GET: taken
overlook path: the path                              | refusals | a MAC without colons: taken; a query: taken; an encoded MAC: taken; another path: taken
overlook path: the MAC                               | refusals | a MAC in lower case: taken
overlook encoding: Transfer-Encoding                 | refusals | a chunked body: taken
overlook encoding: Content-Encoding                  | refusals | an encoded body: taken
overlook header-missing: there is no Content-Length  | refusals | no Content-Length: taken
overlook header-missing: there is no Content-Type    | refusals | no Content-Type: taken
overlook header-missing: there is no Authorization   | refusals | no Authorization: taken
overlook header-missing: there is no Signature       | refusals | no Signature: taken
overlook header-duplicate: the Content-Length        | refusals | Content-Length twice: taken
overlook header-duplicate: the Content-Type          | refusals | Content-Type twice: taken
overlook header-duplicate: the Authorization         | refusals | Authorization twice: taken
overlook header-duplicate: the Signature             | refusals | Signature twice: taken
overlook header-order: the Content-Type              | refusals | Content-Type first: taken
overlook header-order: the Authorization             | refusals | Authorization before Content-Type: taken
overlook header-order: the Signature                 | refusals | Signature before Authorization: taken
overlook content-length:                             | refusals | a body shorter than its length: taken; a length that is no number: taken; a length with a sign: taken
overlook content-type:                               | refusals | a form: taken; another text: taken
overlook authorization:                              | refusals | a nonce in upper case: taken; a short nonce: taken; a timestamp that is no number: taken; another scheme: taken; no nonce: taken; no timestamp: taken; parts in another order: taken
overlook unknown-switch:                             | refusals | an unknown switch: taken
overlook key: the key ""                             | refusals | no key: taken
overlook key:                                        | refusals | another key: taken; no key: taken
overlook timestamp:                                  | refusals | a future timestamp: taken; a timestamp just outside the window, new: taken; a timestamp just outside the window, old: taken; an old timestamp: taken; the timestamp of a switch without a clock: taken
overlook signature: Signature is                     | refusals | a signature in upper case: taken; an empty signature: taken; the beginning of a signature: taken
overlook signature: the signature                    | refusals | a changed body: taken; a signature without the authorization: taken; a signature without the body: taken; a signature without the path: taken; an empty secret: taken; another secret: taken; the signature of another nonce: taken; the signature of another path: taken; the signature of another time: taken
authorization not signed                             | refusals | a signature without the authorization: taken
path not signed                                      | refusals | a signature without the path: taken
body not signed                                      | refusals | a signature without the body: taken
half a signature                                     | refusals | the beginning of a signature: taken
overlook body:                                       | refusals | a body that is no JSON: taken; a list for a body: taken; no body: taken
refusals as documents                                | fallback | a replay there: refusal that is applied; a wrong signature there: refusal that is applied
refusals with 200                                    | fallback | a replay there: taken; a wrong signature there: taken
refusals with 503                                    | fallback | a replay there: should: refusal of another status; a wrong signature there: should: refusal of another status
locked out for ever                                  | refusals | a good check-in after all of these: not served
reports on one line refused                          | check-ins | a report of one member: not served; a report on one line: not served
letters beyond ASCII refused                         | check-ins | a report with any text: not served
counters of 63 bits                                  | check-ins | a report with large counters: not served
long reports refused                                 | check-ins | a long report: not served
header names by letter case                          | check-ins | header names in lower case: not served
no other headers                                     | check-ins | other headers: not served
no slow clocks                                       | check-ins | a clock some seconds slow: not served; a timestamp just inside the window, old: not served
no fast clocks                                       | check-ins | a clock some seconds fast: not served; a timestamp just inside the window, new: not served
overlook nonce:                                      | nonces   | a replay with another report: taken; a replay: taken; the same check-in at once: taken
bare nonces                                          | nonces   | nonces of a restarted switch: not served
nonces with bodies                                   | nonces   | a replay with another report: taken
nonces used up by strangers                          | nonces   | a nonce that a stranger tried: not served
nonces written down late                             | nonces   | the same check-in at once: taken
nonces of each host                                  | fallback | a replay there: taken
no fallback                                          | fallback | a check-in there: not served
signatures overlooked at the fallback host           | fallback | a wrong signature there: taken
created                                              | fallback | a check-in there: not served
a page for a reply                                   | fallback | a check-in there: should: reply that is no document
a long reply                                         | fallback | a check-in there: reply too long
redirection                                          | fallback | a check-in there: redirected
impatience                                           | pace     | a slow switch: not served
nonces used up by what was cut                       | pace     | a check-in that was cut off before: not served
one check-in at a time                               | pace     | two check-ins at once: not served
endless patience                                     | pace     | a sender that falls silent: should: waited for without end
settings once                                        | settings | a forged acknowledgement: not delivered again; refused settings: not delivered again
settings at full speed                               | settings | a refused document at full speed: should: delivered at full speed
settings for ever                                    | settings | acknowledged settings: delivered after its acknowledgement; what came from the fallback host: delivered after its acknowledgement
forged acknowledgements                              | settings | a forged acknowledgement: not delivered again
one number for all                                   | settings | a number from another cloud: number does not rise; settings at the fallback host: number does not rise; two documents: number does not rise
numbers of its own                                   | settings | a number from another cloud: number does not rise
settings without a number                            | settings | queued settings: no number
numbers as texts                                     | settings | queued settings: no number
other settings                                       | settings | a number from another cloud: should: other settings than were queued; queued settings: should: other settings than were queued; settings at the fallback host: should: other settings than were queued
settings changed under their number                  | settings | refused settings: one number for two documents
the newest first                                     | settings | two documents: should: not the oldest first
no settings at the fallback host                     | settings | settings at the fallback host: not delivered
polls answered at once                               | keeper   | a poll after a dropped one: answered without an action; a poll after an action: answered without an action; a poll: answered without an action; a pushed action: action not delivered; an action for a dropped poll: action lost; an action for two polls: should: action for the older connection; an action while nobody waits: should: action lost; an unknown switch's poll: should: answered without an action
strangers answered at once                           | keeper   | an unknown switch's poll: should: answered without an action
polls to be signed                                   | keeper   | a poll after a dropped one: answered without an action; a poll after an action: answered without an action; a poll: answered without an action; a pushed action: action of another form; an action for a dropped poll: action of another form; an action for two polls: should: action of another form; an action while nobody waits: should: action of another form; an unknown switch's poll: should: answered without an action
actions lost with a connection                       | keeper   | an action for a dropped poll: action lost
actions repeated                                     | keeper   | a poll after an action: an action that nobody pushed
actions only for who waits                           | keeper   | an action for a dropped poll: action lost; an action while nobody waits: should: action lost
the older poll first                                 | keeper   | an action for two polls: should: action for the older connection
actions in a list                                    | keeper   | a pushed action: action of another form; an action for a dropped poll: action of another form; an action for two polls: should: action of another form; an action while nobody waits: should: action of another form
no check-ins during a poll                           | keeper   | a check-in during a poll: not served
time without a zone                                  | time     | the time: time of another form
time as a number                                     | time     | the time: time of another form
time with fractions                                  | time     | the time: time of another form
a date that is none                                  | time     | the time: time of another form
time under another name                              | time     | the time: time of another form
a clock that stands                                  | time     | the time: wrong time
time told late                                       | time     | the time: should: late time
redirection                                          | time     | the time: redirected
no time                                              | time     | the time: not served
"""

# What the lab itself does wrong when it is told to, at its check-in port.
MISBEHAVIOURS = """
expired    | certificates | certificate of the check-in host: certificate not trusted
unknown-ca | certificates | certificate of the check-in host: certificate not trusted
wrong-name | certificates | certificate of the check-in host: certificate not trusted
reset      | certificates | certificate of the check-in host: no TLS
"""


def rows(table):
    return [[word.strip() for word in line.split("|")] for line in table.strip().splitlines()]


# No habit is waited for longer than it takes to show.
HASTE = ("--window", "300", "--hold", "1", "--wait", "4", "--redeliver", "5", "--timeout", "8")
OF_FAMILY = {"pace": ("--patience", "13"), "keeper": ("--wait", "2")}


class Cloud:
    """A lab, with a habit or without, and the judge before it."""

    def __init__(self, folder, habit=None):
        self.folder = pathlib.Path(folder)
        self.lab = Lab(LENIENT_LAB if habit else LAB, self.folder / "lab", options=(
            "--redeliver-seconds", "1.5", *(("--habit", habit) if habit else ())))

    def options(self, checkin=None):
        ports = self.lab.ports
        admin = f"http://127.0.0.1:{ports['admin']}/switches/$MAC"
        return ["--checkin", f"localhost:{checkin or ports['https'][0]}",
                "--fallback", f"localhost:{ports['https'][1]}",
                "--keeper", f"localhost:{ports['keeper'][0]}", "--ca", ports["ca_dir"],
                "--mac", MAC, "--key", KEY, "--secret", SECRET,
                "--queue-settings", f"curl --noproxy '*' -sSf -d @- {admin}/settings",
                "--push-action", f"curl --noproxy '*' -sSf -d @- {admin}/actions"]

    def judge(self, *options, **more):
        run = subprocess.run(
            [JUDGE, *self.options(**more), *HASTE, "--json", "report.json", *options],
            cwd=self.folder, text=True, capture_output=True, timeout=200, check=False)
        report = json.loads((self.folder / "report.json").read_text())
        return report, run


def found(report):
    """The findings as the tables above have them."""
    return "; ".join(sorted({
        f"{one['probe']}: {'should: ' if one['level'] == 'should' else ''}{one['reason']}"
        for one in report["findings"]}))


def fault_of(row, prepare=lambda lab, habit: None, lenient=True):
    """What is wrong with the judgement of one habit; None for nothing."""
    habit, family, expected = row
    with tempfile.TemporaryDirectory(prefix="vx_cloud_") as folder:
        cloud = Cloud(folder, habit if lenient else None)
        try:
            prepare(cloud.lab, habit)
            report, run = cloud.judge("--family", family, *OF_FAMILY.get(family, ()))
        finally:
            cloud.lab.stop()
        log = cloud.lab.process.log.read_text(errors="replace")
    wrong = [word for word in ("Sanitizer", "runtime error") if word in run.stderr + log]
    convicts = any(one["level"] == "must" for one in report["findings"])
    if found(report) != expected or run.returncode != int(convicts) or wrong:
        return f"{habit} | {family} | {found(report)}\n{run.stderr[-1000:]}{wrong or ''}"
    return None


def faults_of(table, **more):
    """Those of all rows, of which several are judged at once: they wait more than they compute."""
    with concurrent.futures.ThreadPoolExecutor(6) as pool:
        faults = list(pool.map(lambda row: fault_of(row, **more), table))
    return "\n".join(fault for fault in faults if fault)


class OneAtATime:
    """A port before another one that takes a connection only when the last one has ended."""

    def __init__(self, port):
        self.port = port
        self.listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        try:
            while True:
                near, _ = self.listener.accept()
                with near, socket.create_connection(("127.0.0.1", self.port)) as far:
                    back = threading.Thread(target=self.pump, args=(far, near), daemon=True)
                    back.start()
                    self.pump(near, far)
                    back.join()
        except OSError:
            return  # the listener was closed

    @staticmethod
    def pump(source, target):
        try:
            while data := source.recv(65536):
                target.sendall(data)
            target.shutdown(socket.SHUT_WR)
        except OSError:
            pass


class Judgement(unittest.TestCase):
    maxDiff = None

    def folder(self):
        folder = tempfile.TemporaryDirectory(prefix="vx_cloud_")
        self.addCleanup(folder.cleanup)
        return pathlib.Path(folder.name)

    def cloud(self, habit=None):
        cloud = Cloud(self.folder(), habit)
        self.addCleanup(cloud.lab.stop)
        return cloud


class Habits(Judgement):
    def test_each_bad_habit_is_convicted_by_the_right_line_alone(self):
        self.assertEqual("", faults_of(rows(HABITS)))

    def test_what_the_lab_does_wrong_when_told_is_convicted_by_the_right_line_alone(self):
        def misbehave(lab, mode):
            lab.ask("POST", "/misbehave", {"mode": mode, "port": lab.ports["https"][0]})

        self.assertEqual("", faults_of(rows(MISBEHAVIOURS), prepare=misbehave, lenient=False))

    def test_a_cloud_that_slow_senders_keep_busy_is_convicted(self):
        cloud = self.cloud()
        before = OneAtATime(cloud.lab.ports["https"][0])
        self.addCleanup(before.listener.close)
        report, _ = cloud.judge("--family", "pace", "--timeout", "2",
                                checkin=before.listener.getsockname()[1])
        self.assertEqual("a check-in beside slow senders: not answered", found(report))

    def test_every_habit_is_judged(self):
        written = (SOURCE / "tests/judge/lenient_lab.cpp").read_text()
        habits = set(re.findall(r'^    \{"([^"]+)",', written.split("Habit habits[]")[1], re.M))
        judged = {habit for habit, _, _ in rows(HABITS) if not habit.startswith("overlook ")}
        self.assertEqual(habits - {"none"}, judged)

    def test_every_rejection_of_the_page_is_overlooked_by_somebody(self):
        page = (SOURCE / "docs/wire.md").read_text().split("### 1.6 ")[1].split("\n#")[0]
        codes = set(re.findall(r"^\| `([a-z-]+)` \|", page, re.M))
        overlooked = {habit.split()[1].rstrip(":") for habit, _, _ in rows(HABITS)
                      if habit.startswith("overlook ")}
        self.assertGreater(len(codes), 10)
        self.assertEqual(codes, overlooked)


class Acquittal(Judgement):
    def judge_everything(self):
        cloud = self.cloud()
        report, run = cloud.judge("--strict", "--patience", "13", "--junit", "report.xml",
                                  "--summary", "ticket.txt")
        self.assertEqual((0, []), (run.returncode, report["findings"]), run.stdout + run.stderr)
        return cloud, report, run

    def test_the_lab_is_acquitted_of_everything(self):
        cloud, report, run = self.judge_everything()
        self.assertIn("\nacquitted\n", run.stdout)
        self.assertEqual([], [check for check in report["checks"] if "skipped" in check])
        self.assert_refused_for_its_own_reason(report)
        self.assert_the_page_has_what_is_quoted(report)
        self.assert_every_check_can_convict(report)
        self.assert_every_form_tells_the_same(cloud, report)
        self.assert_its_report_is_that_of_a_switch(cloud)

    def assert_the_page_has_what_is_quoted(self, report):
        page = (SOURCE / "docs/wire.md").read_text()
        sections = set(re.findall(r"^##+ (\d+(?:\.\d+)?)\.? ", page, re.M))
        quoted = {re.match(r"[\d.]*\d", check["says"])[0] for check in report["checks"]}
        self.assertGreater(len(quoted), 7)
        self.assertEqual(set(), quoted - sections)

    def assert_refused_for_its_own_reason(self, report):
        """Each bad check-in has the one fault that it is said to have, and no other."""
        refusals = 0
        for check in report["checks"]:
            code = re.match(r"1\.6, ([a-z-]+): ", check["says"])
            if code:
                refusals += 1
                self.assertRegex(check["came"], f"^403 text/plain: {code[1]}: ", check["probe"])
        self.assertGreater(refusals, 50)

    def assert_every_check_can_convict(self, report):
        checks = {(check["family"], check["probe"]) for check in report["checks"]}
        table = rows(HABITS) + rows(MISBEHAVIOURS)
        convicting = {(family, line.split(": ")[0])
                      for _, family, lines in table for line in lines.split("; ")}
        alone = {("pace", "a check-in beside slow senders"), # the forwarder's
                 # These differ from the fallback host's by the host alone.
                 ("check-ins", "a check-in"),
                 ("certificates", "certificate of the fallback host")}
        self.assertEqual(alone, checks - convicting)
        self.assertEqual(set(), convicting - checks)

    def assert_every_form_tells_the_same(self, cloud, report):
        suite = xml.etree.ElementTree.parse(cloud.folder / "report.xml").getroot()
        self.assertEqual(len(report["checks"]), len(list(suite.iter("testcase"))))
        self.assertEqual("cloud_judge", suite.get("name"))
        ticket = (cloud.folder / "ticket.txt").read_text()
        self.assertIn("Judgement of a cloud by cloud_judge", ticket)
        for text in (ticket, json.dumps(report)):
            self.assertNotIn(SECRET, text)

    def assert_its_report_is_that_of_a_switch(self, cloud):
        self.assertEqual([], list(wire_schema.report_faults(cloud.lab.report())))


class Output(Judgement):
    def test_each_check_tells_what_was_sent_and_came_and_is_asked_for(self):
        _, run = self.cloud("overlook nonce:").judge("--family", "fallback", "--verbose")
        self.assertIn("""fallback, a check-in there: good
  sent   a report to the fallback host""", run.stdout)
        self.assertIn("""\nfallback, a replay there: taken
  sent   a check-in, and the same bytes to the fallback host
           POST /cloud-switch/""" + MAC, run.stdout)
        self.assertIn("\n  must   1.3: a request sent twice is refused", run.stdout)
        self.assertIn("\n  came   200 application/json: {}\n", run.stdout)
        self.assertIn("convicted: 1 finding\n", run.stdout)

    def test_shoulds_convict_only_when_asked_to(self):
        cloud = self.cloud("refusals with 503")
        for options, status in ((), 0), (("--strict",), 1):
            report, run = cloud.judge("--family", "fallback", *options)
            self.assertEqual(status, run.returncode)
            self.assertEqual({"should"}, {one["level"] for one in report["findings"]})
            self.assertIn("acquitted, and 2 things that should be otherwise\n", run.stdout)

    def test_what_nobody_can_queue_is_skipped_and_told(self):
        cloud = self.cloud()
        options = cloud.options()
        options = options[:options.index("--queue-settings")]
        run = subprocess.run(
            [JUDGE, *options, *HASTE, "--junit", "report.xml", "--family", "settings", "--family",
             "keeper", "--family", "pace"], cwd=cloud.folder, text=True, capture_output=True,
            timeout=100, check=False)
        self.assertEqual(0, run.returncode, run.stdout)
        self.assertIn("acquitted; 8 checks skipped\n", run.stdout)
        suite = xml.etree.ElementTree.parse(cloud.folder / "report.xml").getroot()
        self.assertEqual("8", suite.get("skipped"))
        reasons = {skipped.get("message") for skipped in suite.iter("skipped")}
        self.assertEqual({"nobody to queue these settings", "nobody to push this action",
                          "settings were not delivered as they should be", "no action was pushed",
                          "--patience was not given"}, reasons)
        for reason in reasons:
            self.assertIn(f": {reason}\n", run.stdout)

    def test_a_command_that_fails_is_a_finding(self):
        report, run = self.cloud().judge("--family", "keeper", "--push-action", "exit 3")
        self.assertEqual(1, run.returncode)
        self.assertEqual("could not be queued", report["findings"][0]["reason"])
        self.assertEqual("the command failed with status 3", report["findings"][0]["came"])

    def test_a_wrong_account_is_remarked(self):
        _, run = self.cloud().judge("--family", "certificates", "--secret", "other")
        self.assertEqual(0, run.returncode)
        self.assertIn("remark: not even a plain check-in is served (403 text/plain: signature:",
                      run.stdout)

    def test_a_person_can_be_asked_to_push(self):
        cloud = self.cloud()
        options = cloud.options()
        options = options[:options.index("--queue-settings")]
        judge = subprocess.Popen(
            [JUDGE, *options, *HASTE, "--family", "keeper", "--ask"], cwd=cloud.folder, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        output = []
        with judge:
            for line in judge.stdout:
                output.append(line)
                if line.startswith('{"action"'):
                    cloud.lab.push(**json.loads(line))
                    judge.stdin.write("\n")
                    judge.stdin.flush()
        self.assertEqual(0, judge.returncode, "".join(output))
        self.assertEqual("acquitted\n", output[-1])

    def test_a_wrong_command_line_is_told(self):
        good = ["--checkin", "localhost:1", "--mac", MAC, "--key", "k", "--secret", "s"]
        for wrong in ([], good[:2], [*good, "--family", "none"], [*good, "--unknown"],
                      [*good, "--window"], [*good, "--window", "x"], [*good, "--ca", "/nowhere"],
                      [*good[:3], MAC.lower(), *good[4:]], [*good, "--keeper", "a/b"]):
            with self.subTest(wrong=wrong):
                run = subprocess.run([JUDGE, *wrong], capture_output=True, text=True, timeout=30,
                                     check=False)
                self.assertEqual(2, run.returncode)
                self.assertIn("cloud_judge: ", run.stderr)

    def test_a_cloud_that_is_not_there_is_convicted(self):
        with socket.create_server(("127.0.0.1", 0)) as listener:
            port = listener.getsockname()[1]
        run = subprocess.run(
            [JUDGE, "--checkin", f"localhost:{port}", "--mac", MAC, "--key", "k", "--secret", "s",
             "--family", "check-ins", "--family", "time"], capture_output=True, text=True,
            timeout=60, check=False)
        self.assertEqual(1, run.returncode)
        self.assertIn("check-ins, a check-in: not answered\n", run.stdout)
        self.assertIn("Connection refused", run.stdout)

    def test_an_interruption_ends_it_without_a_verdict(self):
        cloud = self.cloud()
        judge = subprocess.Popen([JUDGE, *cloud.options(), *HASTE, "--hold", "60", "--family",
                                  "keeper"], stdout=subprocess.PIPE, text=True)
        cloud.lab.event("poll", 0)
        judge.send_signal(signal.SIGINT)
        output, _ = judge.communicate(timeout=60)
        self.assertEqual(3, judge.returncode)
        self.assertIn("interrupted: no verdict\n", output)
