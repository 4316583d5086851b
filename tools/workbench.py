"""A lab cloud and simulated switches as processes: started, asked and stopped from a script."""
import json
import os
import pathlib
import shutil
import signal
import subprocess
import threading
import time
import typing
import urllib.error
import urllib.request

import wire_schema

MAC = "02:1B:2C:3D:4E:5F"
KEY = "lab-key"
SECRET = "lab-secret"

# The lab is on this machine: no proxy of the environment is asked for it.
HTTP = urllib.request.build_opener(urllib.request.ProxyHandler({}))


class Failed(Exception):
    """What was expected did not happen."""


def wait_until(what, condition, seconds=20):
    """The first true value of `condition`; Failed, naming `what`, when there is none in time."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Failed(f"{what}: not within {seconds} s")
        time.sleep(0.02)


def judge(what, faults, bad):
    """Failed unless a document is as good or bad as it is said to be."""
    faults = list(faults)
    if bool(faults) != bad:
        raise Failed(f"{what}: {'; '.join(faults) or 'nothing is bad about it'}")


class Process:
    """A program whose output goes to a file, and to `listener` line by line. One `of_its_own` hears
    of no Ctrl-C at the terminal, and is killed should whoever started it end without a word."""

    def __init__(self, command, log, listener=None, of_its_own=False):
        self.log = pathlib.Path(log)
        if of_its_own:
            command = ["setpriv", "--pdeathsig", "KILL", *command]
        with open(self.log, "ab") as log:
            self.child = subprocess.Popen(
                command, stdout=subprocess.PIPE if listener else log, stderr=subprocess.STDOUT,
                stdin=subprocess.DEVNULL, start_new_session=of_its_own)
        self.reader = None
        if listener:
            self.reader = threading.Thread(target=self._read, args=(listener,), daemon=True)
            self.reader.start()

    def _read(self, listener):
        with open(self.log, "ab") as log:
            for line in self.child.stdout:
                log.write(line)
                log.flush()
                listener(line.decode(errors="replace").rstrip("\n"))

    def running(self):
        return self.child.poll() is None

    def stop(self, how=signal.SIGTERM):
        if self.running():
            self.child.send_signal(how)
            try:
                self.child.wait(10)
            except subprocess.TimeoutExpired:
                self.child.kill()
                self.child.wait()
        if self.reader:
            self.reader.join(10)
        return self.child.returncode


class Account(typing.NamedTuple):
    """Who a switch is to its cloud."""
    mac: str = MAC
    key: str = KEY
    secret: str = SECRET

    def digits(self):
        return self.mac.replace(":", "").lower()


class Cloud(typing.NamedTuple):
    """Where a switch finds its cloud, each as HOST:PORT, and the certificates by which it knows it."""
    checkin: str
    fallback: str
    keeper: str
    trust: str


class Lab:
    """The lab cloud, with an account for the switch of MAC."""

    def __init__(self, program, folder, listener=None, options=(), of_its_own=False):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        ports = self.folder / "ports.json"
        ports.unlink(missing_ok=True)
        self.process = Process(
            [str(program), "--data", str(self.folder), "--https-port", "0", "--https-port", "0",
             "--keeper-port", "0", "--keeper-port", "0", "--account", f"{MAC},{KEY},{SECRET}",
             *options],
            self.folder / "lab.log", listener, of_its_own)
        wait_until("the lab cloud is ready", lambda: ports.exists() or self._check_running())
        self.ports = json.loads(ports.read_text())

    def _check_running(self):
        if not self.process.running():
            raise Failed("the lab cloud ended: " + (self.folder / "lab.log").read_text())

    def cloud(self):
        return Cloud(f"localhost:{self.ports['https'][0]}", f"localhost:{self.ports['https'][1]}",
                     f"localhost:{self.ports['keeper'][0]}", self.ports["ca_dir"])

    def ask(self, method, path, document=None):
        body = None
        if document is not None:
            body = document if isinstance(document, bytes) else json.dumps(document).encode()
        request = urllib.request.Request(
            f"http://127.0.0.1:{self.ports['admin']}{path}", body, method=method)
        with HTTP.open(request, timeout=70) as answer:
            text = answer.read()
        return json.loads(text) if text else None

    def last_event(self):
        return self.ask("GET", "/events?after=999999999&timeout=0")["last"]

    def event(self, kind, after, seconds=20, where=lambda event: True):
        """The first event of a kind after an id that meets a condition."""
        end = time.monotonic() + seconds
        while True:
            left = end - time.monotonic()
            if left <= 0:
                raise Failed(f"no event \"{kind}\" within {seconds} s")
            found = self.ask("GET", f"/events?after={after}&kind={kind}&timeout={left:.2f}")
            for event in found["events"]:
                after = event["id"]
                if where(event):
                    return event

    def report(self):
        return self.ask("GET", f"/switches/{MAC}/report")

    def queue_settings(self, document, bad=False):
        """Settings that are not what a cloud should send must be said to be bad; the lab refuses
        them first, and then queues them all the same."""
        judge("settings", wire_schema.settings_faults(document), bad)
        if bad:
            self.refuse_settings(document)
        return self.ask("POST", f"/switches/{MAC}/settings{'?anyway=1' if bad else ''}",
                        document)["config_seqno"]

    def refuse_settings(self, document):
        """Settings that the lab does not queue, and its reason."""
        try:
            self.ask("POST", f"/switches/{MAC}/settings", document)
        except urllib.error.HTTPError as refusal:
            with refusal:
                return json.loads(refusal.read())["error"]
        raise Failed(f"the lab queued {document}")

    def withdraw_settings(self, number):
        self.ask("DELETE", f"/switches/{MAC}/settings/{number}")

    def put_firmware(self, name, image):
        self.ask("PUT", f"/firmware/{name}", image)

    def firmware_url(self, name):
        """Where a switch finds an image; "corrupt/NAME" is a damaged copy."""
        return f"http://localhost:{self.ports['http']}/firmware/{name}"

    def reports(self):
        """Those that the lab has kept, by their ids, the newest first."""
        for kept in self.ask("GET", f"/switches/{MAC}/reports"):
            yield kept["id"], self.ask("GET", f"/switches/{MAC}/reports/{kept['id']}")

    def push(self, bad=False, **action):
        judge("action", wire_schema.action_faults(action), bad)
        return self.ask("POST", f"/switches/{MAC}/actions", action)["id"]

    def misbehave(self, mode, **how):
        self.ask("POST", "/misbehave", {"mode": mode, **how})

    def behave(self):
        self.ask("DELETE", "/misbehave")

    def stop(self):
        return self.process.stop()


class Switch:
    """A simulated switch with the agent on it; `cloud` is a lab or a Cloud."""

    def __init__(self, program, folder, cloud, speed=60, scenario=None, listener=None, options=(),
                 account=Account(), traced=True, of_its_own=False):
        self.program = program
        self.root = pathlib.Path(folder)
        self.root.mkdir(parents=True, exist_ok=True)
        self.speed = speed
        self.listener = listener
        self.options = options
        self.traced = traced
        self.account = account
        self.of_its_own = of_its_own
        self.scenario = self.root.with_suffix(".json")
        if isinstance(cloud, Lab):
            cloud = cloud.cloud()
        self._trust(cloud)
        self._write_scenario(cloud, scenario or {})
        self.process = None

    def _trust(self, cloud):
        certificates = self.root / "etc/ssl/certs"
        shutil.rmtree(certificates, ignore_errors=True)
        shutil.copytree(cloud.trust, certificates)

    def _write_scenario(self, cloud, scenario):
        suffix = self.account.digits()
        cloud = {
            "checkin_host": cloud.checkin,
            "fallback_host": cloud.fallback,
            "connkeeper_host": cloud.keeper,
            "key": self.account.key + suffix,
            "secret": self.account.secret + suffix,
            **scenario.get("cloud", {}),
        }
        hardware = {**scenario.get("hardware", {})}
        hardware["system"] = {"mac": self.account.mac, **hardware.get("system", {})}
        self.scenario.write_text(
            json.dumps({**scenario, "hardware": hardware, "cloud": cloud}, indent=1))

    def start(self):
        trace = ["--trace", str(self.root / "trace.log")] if self.traced else []
        self.process = Process(
            [str(self.program), "--root", str(self.root), "--scenario", str(self.scenario),
             "--speed", str(self.speed), *trace, *self.options],
            self.root / "agent.log", self.listener, self.of_its_own)
        return self

    def running(self):
        return self.process.running()

    def trace(self):
        file = self.root / "trace.log"
        return file.read_text(errors="replace").splitlines() if file.exists() else []

    def console(self):
        file = self.root / "dev/console"
        return file.read_text(errors="replace") if file.exists() else ""

    def startup_config(self):
        file = self.root / "etc/startup-config.json"
        return json.loads(file.read_text())["config"] if file.exists() else {}

    def request(self, document, bad=False):
        """Leaves a local request, settings or any text, and tells the agent."""
        if not isinstance(document, str):
            judge("settings", wire_schema.settings_faults(document), bad)
        text = document if isinstance(document, str) else json.dumps(document)
        (self.root / "tmp/vx_cloud_post").write_text(text)
        self.tell()

    def tell(self):
        os.kill(self.process.child.pid, signal.SIGUSR1)

    def request_is_gone(self):
        return not (self.root / "tmp/vx_cloud_post").exists()

    def stop(self, how=signal.SIGTERM):
        return self.process.stop(how) if self.process else None
