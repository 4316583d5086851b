"""The herd beside a real fleet: what the simulation says of so many switches, and what they did.

    herd_confirm.py [--fleet N] [--minutes M] [--speed S] [--build DIR] [--state DIR]

Exits 0 when the check-ins and the long-polls of the two differ by less than a tenth."""
import argparse
import json
import pathlib
import subprocess
import sys

import fleet
import places
from herd import INTERVAL, KEEPER_COMES_UP, LISTEN, SERVICES_COME_UP, Cloud, Herd

FIRST_CHECKIN = SERVICES_COME_UP + KEEPER_COMES_UP + 1
WALL_LATENCY = 0.05  # of a check-in on a workstation, seconds


def simulate(count, seconds, speed):
    """So many seconds of the wall, as fleet.py arranges them: starts over one interval, settings and
    pushes."""
    herd = Herd(Cloud(latency=WALL_LATENCY * speed), count)
    for number in range(count):
        herd.power_on(number * INTERVAL / count)
    end = seconds * speed
    for number, member in enumerate(herd.members):
        keep_busy(herd, member, number, number * INTERVAL / count + FIRST_CHECKIN, end)
    herd.run(end)
    return {"checkins": herd.total("check-ins"), "polls": herd.total(LISTEN)}


def keep_busy(herd, member, number, first_seen, end):
    period = fleet.SETTINGS_PERIOD * INTERVAL
    settings, push = fleet.first_due(number)
    for due in times(first_seen + settings * period, end, period):
        herd.at(due, lambda: member.settings.append({"system": {}}))
    for due in times(first_seen + push * period, end, period):
        herd.at(due, lambda: herd.push(member, herd.dice.choice(fleet.ACTIONS)["action"]))


def times(begin, end, step):
    while begin < end:
        yield begin
        begin += step


def count_for_real(arguments):
    words = [sys.executable, "-B", fleet.__file__, "--build", arguments.build, "--state",
             arguments.state, "--fleet", arguments.fleet, "--minutes", arguments.minutes,
             "--speed", arguments.speed, "--json"]
    done = subprocess.run(list(map(str, words)), stdout=subprocess.PIPE, text=True, check=True)
    return json.loads(done.stdout.splitlines()[-1])


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, default=places.BUILD)
    parser.add_argument("--state", type=pathlib.Path, default=places.STATE)
    parser.add_argument("--fleet", type=int, default=200)
    parser.add_argument("--minutes", type=float, default=1)
    parser.add_argument("--speed", type=float, default=10)
    arguments = parser.parse_args()
    real = count_for_real(arguments)
    paper = simulate(arguments.fleet, real["elapsed"], arguments.speed)
    print(f"| {arguments.fleet} switches | herd | fleet |\n|---|---|---|")
    for what, name in (("checkins", "check-ins"), ("polls", "long-polls that were answered")):
        print(f"| {name} | {paper[what]:.0f} | {real[what]} |")
    return 0 if all(abs(paper[what] - real[what]) < real[what] / 10 for what in paper) else 1


if __name__ == "__main__":
    sys.exit(main())
