"""What `./run --fleet N` starts: many simulated switches at one cloud, and who counts what they do.

    fleet.py --fleet N [--minutes M] [--speed S] [--interval S] [--json]
             [--cloud HOST --keeper HOST [--fallback HOST] [--trust DIR] --accounts FILE]
             [--build DIR] [--state DIR]

Each switch is the agent's own process with a MAC, a name, ports, neighbours and a folder of its own.
They are started over one check-in interval, as the check-ins of a fleet lie that was not switched on
in one moment. Without `--cloud` there is a lab cloud, which also sends every switch settings and
pushes; another cloud does that itself. FILE has a line MAC,KEY,SECRET for each switch."""
import argparse
import json
import os
import pathlib
import random
import shutil
import signal
import sys
import time

import places
from workbench import Account, Cloud, Failed, Lab, Switch

GIGABIT, TEN_GIGABIT = 2, 5
LOGICAL_PORTS = (18, 28, 28, 34, 62)  # of which ten are fibre ports and groups
SETTINGS_PERIOD = 4  # check-in intervals between two settings of a switch, and between two pushes
TICK = 0.25  # seconds between two looks at everything
CLOCK_TICKS = os.sysconf("SC_CLK_TCK")

ACTIONS = ({"action": "checkin"}, {"action": "counter_reset", "port": "1"},
           {"action": "port_reset", "port": "2"}, {"action": "cable_test", "port": "1"},
           {"action": "ping_ipv4", "host": "192.168.1.1", "count": 1, "interval": 1, "size": 56})


def say(text):
    print(text, flush=True)


# --- What a switch of the fleet is like.

def account_of(number):
    return Account(f"02:F1:EE:{number >> 16 & 255:02X}:{number >> 8 & 255:02X}:{number & 255:02X}")


def name_of(number):
    return f"Floor-{number // 10 + 1}-{number % 10 + 1}"


def settings_of(number, turn):
    """Documents that differ from turn to turn, so that each changes something."""
    return ({"system": {"summary_info": {"device_name": f"{name_of(number)}-{turn}"}}},
            {"system": {"jumbo_frames": {"size": 1522 + turn}}},
            {"system": {"ports": [{"id": "3", "pvid": 1, "link_speed_mode": turn % 2 * 2}]}},
            )[turn % 3]


def plugged_port(dice, fibre):
    return {"plugged": True, "partner_speed": TEN_GIGABIT if fibre else dice.choice((0, 1, 2, 2)),
            "rx_packets_per_second": dice.randrange(2000),
            "tx_packets_per_second": dice.randrange(2000)}


def device(dice, port):
    return {"mac": ":".join(f"{byte:02X}" for byte in (2, *dice.randbytes(5))), "vlan": 1,
            "ports": str(port), "learned": True}


def scenario_of(number, interval, dice):
    """A switch of some size, of which some ports are in use, some with devices and power."""
    logical = dice.choice(LOGICAL_PORTS)
    copper = logical - 10
    used = sorted(dice.sample(range(copper), dice.randint(1, copper)))
    return {
        "cloud": {"checkin_interval": interval},
        "config": {"system": {"name": name_of(number)}},
        "hardware": {
            "logical_ports": logical,
            "ports": [plugged_port(dice, False) if port in used else {} for port in range(copper)],
            "poe": {"budget": 2500, "ports": [
                {"demand": dice.choice((0, 40, 125)), "class": 3} if port in used else {}
                for port in range(min(copper, 24))]},
            "mac_table": {"learned": [device(dice, port) for port in used
                                      for _ in range(dice.randint(0, 8))]}}}


def first_due(number):
    """When a switch gets its first settings and its first push, as parts of the period."""
    dice = random.Random(number)
    return dice.random(), dice.random()


def read_accounts(file):
    lines = (line.strip() for line in pathlib.Path(file).read_text().splitlines())
    return [Account(*line.split(",", 2)) for line in lines if line and not line.startswith("#")]


# --- What Linux says of a process.

def processes_below(pid):
    """The process and those that it started, as far as they are still there."""
    try:
        children = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text().split()
    except OSError:
        return []
    return [pid, *(below for child in children for below in processes_below(int(child)))]


def memory_of(pid):
    """Bytes, of which what is shared with others counts in part."""
    try:
        rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    except OSError:
        return 0
    return sum(int(line.split()[1]) * 1024 for line in rollup.splitlines()
               if line.startswith("Pss:"))


def processor_seconds(pid):
    try:
        fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    except OSError:
        return 0.0
    return sum(map(int, fields[11:15])) / CLOCK_TICKS  # its own and of children that have ended


def threads_of(pid):
    try:
        return len(os.listdir(f"/proc/{pid}/task"))
    except OSError:
        return 0


# --- The fleet.

class Member:
    """One switch, and what its transfers were."""

    def __init__(self, number, switch):
        self.number, self.switch = number, switch
        self.transfers = switch.root / "transfers.json"
        self.position = 0
        self.checkins = self.refused = self.unanswered = self.polls = 0
        self.sent = self.received = 0
        self.turn = 0
        self.settings_due = self.push_due = None

    def read_transfers(self):
        """Those that ended since the last look."""
        if not self.transfers.exists():
            return
        with open(self.transfers, "rb") as file:
            file.seek(self.position)
            for line in file:
                if not line.endswith(b"\n"):
                    break
                self.position += len(line)
                yield json.loads(line)

    def count(self, transfer):
        """Counts one; its milliseconds when it was a check-in that was answered with 200."""
        self.sent += transfer["sent"]
        self.received += transfer["received"]
        if not transfer["url"].endswith("/checkin"):
            self.polls += "/router/listen/" in transfer["url"]
        elif transfer["status"] == 200:
            self.checkins += 1
            return transfer["milliseconds"]
        elif transfer["status"]:
            self.refused += 1
        else:
            self.unanswered += 1
        return None


class Fleet:
    """Starts the switches one by one, keeps them busy, counts. stop() leaves nothing behind."""

    def __init__(self, arguments, folder):
        self.arguments = arguments
        self.folder = folder
        self.dice = random.Random(arguments.fleet)
        self.members = []
        self.latencies = []
        self.lab = None
        self.lab_stats = {}
        shutil.rmtree(folder, ignore_errors=True)
        self.accounts = self._accounts()
        self.cloud = self._foreign_cloud() if arguments.cloud else self._lab_cloud()
        self.began = time.monotonic()

    def _accounts(self):
        count = self.arguments.fleet
        if not self.arguments.accounts:
            return [account_of(number) for number in range(count)]
        accounts = read_accounts(self.arguments.accounts)
        if len(accounts) < count:
            raise Failed(f"{self.arguments.accounts} has {len(accounts)} accounts, not {count}")
        return accounts[:count]

    def _foreign_cloud(self):
        fallback = self.arguments.fallback or self.arguments.cloud
        return Cloud(self.arguments.cloud, fallback, self.arguments.keeper, self.arguments.trust)

    def _lab_cloud(self):
        self.lab = Lab(places.program("lab_cloud", self.arguments.build), self.folder / "cloud",
                       options=["--quiet"], of_its_own=True)
        for account in self.accounts:
            self.lab.ask("PUT", f"/switches/{account.mac}",
                         {"key": account.key, "secret": account.secret})
        return self.lab.cloud()

    def spread(self):
        """Seconds of the wall over which the switches are started: one interval of theirs."""
        return self.arguments.interval / self.arguments.speed

    def start_due(self):
        due = (time.monotonic() - self.began) * len(self.accounts) / self.spread()
        while len(self.members) < min(len(self.accounts), int(due) + 1):
            self._start(len(self.members))

    def _start(self, number):
        root = self.folder / f"switch-{number}"
        switch = Switch(places.program("vx_cloud_sim", self.arguments.build), root, self.cloud,
                        self.arguments.speed, scenario_of(number, self.arguments.interval,
                                                          self.dice),
                        options=["--transfers", str(root / "transfers.json")],
                        account=self.accounts[number], traced=False, of_its_own=True)
        self.members.append(Member(number, switch))
        switch.start()

    def all_started(self):
        return len(self.members) == len(self.accounts)

    def look(self):
        """Counts what happened, and gives those something to do whose time has come."""
        for member in self.members:
            for transfer in member.read_transfers():
                latency = member.count(transfer)
                if latency is not None:
                    self.latencies.append(latency)
            if not member.switch.running():
                log = (member.switch.root / "agent.log").read_text(errors="replace")
                raise Failed(f"switch {member.number} ended by itself: {log[-2000:]}")
            if self.lab and member.checkins:
                self._keep_busy(member)

    def _keep_busy(self, member):
        now = time.monotonic()
        period = SETTINGS_PERIOD * self.spread()
        mac = member.switch.account.mac
        if member.settings_due is None:
            settings, push = first_due(member.number)
            member.settings_due, member.push_due = now + settings * period, now + push * period
        if now >= member.settings_due:
            member.settings_due += period
            member.turn += 1
            self.lab.ask("POST", f"/switches/{mac}/settings",
                         settings_of(member.number, member.turn))
        if now >= member.push_due:
            member.push_due += period
            self.lab.ask("POST", f"/switches/{mac}/actions", self.dice.choice(ACTIONS))

    # --- What it came to.

    def total(self, what):
        return sum(getattr(member, what) for member in self.members)

    def switch_processes(self):
        return [pid for member in self.members
                for pid in processes_below(member.switch.process.child.pid)]

    def processor_seconds(self):
        """Of the switches, and of the lab."""
        switches = sum(map(processor_seconds, self.switch_processes()))
        return switches, processor_seconds(self.lab.process.child.pid) if self.lab else 0.0

    def figures(self, since):
        """What the fleet did; rates and processor time are those since a mark()."""
        seconds = time.monotonic() - since["time"]
        checkins = self.total("checkins") - since["checkins"]
        switches, lab = self.processor_seconds()
        processes = self.switch_processes()
        self.latencies.sort()
        return {
            "switches": len(self.members),
            "checked_in": sum(member.checkins > 0 for member in self.members),
            "checkins": self.total("checkins"),
            "fewest": min((member.checkins for member in self.members), default=0),
            "most": max((member.checkins for member in self.members), default=0),
            "refused": self.total("refused"), "unanswered": self.total("unanswered"),
            "polls": self.total("polls"),
            "elapsed": time.monotonic() - self.began,
            "seconds": seconds, "checkins_a_second": checkins / seconds,
            "latency": {share: self.percentile(share) for share in (50, 90, 99, 100)},
            "sent": self.total("sent"), "received": self.total("received"),
            "memory": sum(map(memory_of, processes)) / max(1, len(self.members)),
            "switch_ms": 1000 * (switches - since["switches"]) / max(1, checkins),
            "lab_ms": 1000 * (lab - since["lab"]) / max(1, checkins),
            "processors": (switches - since["switches"] + lab - since["lab"]) / seconds,
            "lab": self.lab_figures() if self.lab else None}

    def lab_figures(self):
        pid = self.lab.process.child.pid
        stats = self.lab.ask("GET", "/stats")
        return {"memory": memory_of(pid), "threads": threads_of(pid),
                "waiting_polls": stats["waiting_polls"], **stats["counters"]}

    def mark(self):
        switches, lab = self.processor_seconds()
        return {"time": time.monotonic(), "checkins": self.total("checkins"),
                "switches": switches, "lab": lab}

    def percentile(self, share):
        if not self.latencies:
            return 0.0
        return self.latencies[min(len(self.latencies) - 1, len(self.latencies) * share // 100)]

    def stop(self):
        """Ends every process, all of them at once and none of them for long; removes the folder."""
        processes = [member.switch.process for member in self.members if member.switch.process]
        for process in processes:
            if process.running():
                process.child.terminate()
        for process in processes:
            process.stop()
        if self.lab:
            self.lab.stop()
        shutil.rmtree(self.folder, ignore_errors=True)


# --- For whoever watches.

def tell_progress(fleet):
    checked_in = sum(member.checkins > 0 for member in fleet.members)
    say(f"{time.monotonic() - fleet.began:5.0f} s  {len(fleet.members)} of {len(fleet.accounts)} "
        f"started, {checked_in} have checked in, {fleet.total('checkins')} check-ins, "
        f"{fleet.total('refused')} refused, {fleet.total('unanswered')} unanswered")


def summary(figures):
    latency = figures["latency"]
    yield (f"{figures['switches']} switches, {figures['checked_in']} of them checked in; rates are "
           f"those of the last {figures['seconds']:.0f} s")
    yield (f"  check-ins    {figures['checkins']}, {figures['checkins_a_second']:.1f} a second; "
           f"{figures['fewest']} to {figures['most']} a switch")
    yield f"  refused      {figures['refused']}"
    yield f"  unanswered   {figures['unanswered']}"
    yield (f"  latency      half within {latency[50]:.0f} ms, 90 % within {latency[90]:.0f}, "
           f"99 % within {latency[99]:.0f}, the longest {latency[100]:.0f}")
    yield (f"  traffic      {figures['sent'] / 1e6:.1f} MB from the switches, "
           f"{figures['received'] / 1e6:.2f} MB to them (HTTP, before TLS)")
    yield f"  memory       {figures['memory'] / 1e6:.2f} MB a switch"
    yield (f"  processor    {figures['switch_ms']:.1f} ms a check-in in the switch, "
           f"{figures['processors']:.2f} processors in all")
    yield from lab_summary(figures) if figures["lab"] else ()


def lab_summary(figures):
    lab = figures["lab"]
    yield (f"  settings     {lab.get('settings-queued', 0)} queued, "
           f"{lab.get('settings-acknowledged', 0)} acknowledged, "
           f"{lab.get('settings-refused', 0)} refused")
    yield (f"  pushes       {lab.get('action-queued', 0)} queued, "
           f"{lab.get('action-answered', 0)} answered")
    yield (f"  lab cloud    {lab['memory'] / 1e6:.0f} MB, {lab['threads']} threads, "
           f"{lab['waiting_polls']} long-polls waiting, {figures['lab_ms']:.1f} ms of a processor "
           "a check-in")


def watch(fleet, minutes):
    """Until the time is over or somebody interrupts; what happened since all were started."""
    say(f"Starting {len(fleet.accounts)} switches within {fleet.spread():.0f} s, at "
        f"{fleet.cloud.checkin}; Ctrl-C ends them.")
    since, told, end = fleet.mark(), fleet.began, None
    try:
        while not end or time.monotonic() < end:
            started = fleet.all_started()
            fleet.start_due()
            fleet.look()
            if fleet.all_started() and not started:
                since = fleet.mark()
                end = since["time"] + 60 * minutes if minutes else None
            if time.monotonic() - told > 5:
                told = time.monotonic()
                tell_progress(fleet)
            time.sleep(TICK)
    except KeyboardInterrupt:
        say("")
    fleet.look()
    return since


def run(arguments):
    fleet = None
    try:
        fleet = Fleet(arguments, arguments.state / "fleet")
        figures = fleet.figures(watch(fleet, arguments.minutes))
    finally:
        if fleet:
            fleet.stop()
    say(json.dumps(figures) if arguments.json else "\n".join(summary(figures)))
    return 0 if figures["checked_in"] == arguments.fleet else 1


def parse(words):
    parser = argparse.ArgumentParser(
        prog="./run", description="Simulated switches at one cloud, and what became of them.")
    parser.add_argument("--fleet", type=int, required=True, metavar="N", help="how many switches")
    parser.add_argument("--minutes", type=float, help="end so long after the last one started")
    parser.add_argument("--speed", type=float, default=10, help="simulated seconds a second (10)")
    parser.add_argument("--interval", type=int, default=300, help="seconds between check-ins (300)")
    parser.add_argument("--cloud", metavar="HOST", help="check-in host of another cloud, HOST:PORT")
    parser.add_argument("--fallback", metavar="HOST", help="its fallback host (the check-in host)")
    parser.add_argument("--keeper", metavar="HOST", help="its keeper host")
    parser.add_argument("--trust", metavar="DIR", default="/etc/ssl/certs",
                        help="certificates by which the switches know it (/etc/ssl/certs)")
    parser.add_argument("--accounts", metavar="FILE", help="its accounts, MAC,KEY,SECRET a line")
    parser.add_argument("--state", type=pathlib.Path, default=places.STATE, metavar="DIR",
                        help="where all of them keep their files [%(default)s]")
    parser.add_argument("--build", type=pathlib.Path, default=places.BUILD, metavar="DIR",
                        help="a build folder to take the programs from [%(default)s]")
    parser.add_argument("--json", action="store_true", help="the summary as JSON")
    arguments = parser.parse_args(words)
    if arguments.cloud and not (arguments.keeper and arguments.accounts):
        parser.error("--cloud takes --keeper and --accounts along")
    if arguments.fleet < 1 or arguments.speed <= 0 or arguments.interval < 1:
        parser.error("--fleet, --speed and --interval take numbers above 0")
    return arguments


def main():
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: sys.exit(1))
    try:
        return run(parse(sys.argv[1:]))
    except Failed as failure:
        say(f"FAILED: {failure}")
        return 1
    except KeyboardInterrupt:
        return 1


if __name__ == "__main__":
    sys.exit(main())
