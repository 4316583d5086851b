"""Fleets of growing size, one after the other: a row for each.

    fleet_scale.py [--minutes M] [--speed S] [--build DIR] [--state DIR] [N]..."""
import argparse
import json
import pathlib
import subprocess
import sys

import fleet
import places

COLUMNS = ("switches", "check-ins a second", "half within, ms", "99 % within, ms", "MB a switch",
           "lab cloud: MB", "threads", "long-polls", "ms of a processor a check-in: switch",
           "lab cloud", "processors in all")


def figures_of(count, arguments):
    words = [sys.executable, "-B", fleet.__file__, "--build", arguments.build, "--state",
             arguments.state, "--fleet", count, "--minutes", arguments.minutes, "--speed",
             arguments.speed, "--json"]
    done = subprocess.run(list(map(str, words)), stdout=subprocess.PIPE, text=True, check=True)
    return json.loads(done.stdout.splitlines()[-1])


def row(figures):
    lab, latency = figures["lab"], figures["latency"]
    return (f"| {figures['switches']} | {figures['checkins_a_second']:.1f} | {latency['50']:.0f} | "
            f"{latency['99']:.0f} | {figures['memory'] / 1e6:.2f} | {lab['memory'] / 1e6:.0f} | "
            f"{lab['threads']} | {lab['waiting_polls']} | {figures['switch_ms']:.1f} | "
            f"{figures['lab_ms']:.1f} | {figures['processors']:.2f} |")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, default=places.BUILD)
    parser.add_argument("--state", type=pathlib.Path, default=places.STATE)
    parser.add_argument("--minutes", type=float, default=0.5)
    parser.add_argument("--speed", type=float, default=10)
    parser.add_argument("counts", type=int, nargs="*", metavar="N")
    arguments = parser.parse_args()
    print(f"| {' | '.join(COLUMNS)} |\n|{'---|' * len(COLUMNS)}", flush=True)
    for count in arguments.counts or (25, 100, 200, 500):
        print(row(figures_of(count, arguments)), flush=True)


if __name__ == "__main__":
    main()
