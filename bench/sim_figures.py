"""What a simulated switch costs the desk that it stands on: memory of a switch, how it grows with
check-ins, and the system calls of a check-in, its own and the agent's. The calls need strace.

    bench/sim_figures.py BUILD"""
import collections
import pathlib
import re
import subprocess
import sys
import time

from pair import anonymous_kilobytes, child_of, lab_cloud, switch_at

SPEED = 3000 # 300 s are a tenth of one
CALL = re.compile(r"^(\d+) +(\w+)\((.*)")


def growth(lab, build, folder, trace):
    """Memory after the first check-ins and what a hundred more add, in kilobytes."""
    with switch_at(lab, build, folder, SPEED, trace) as process:
        agent = child_of(process.child.pid)
        time.sleep(3)
        after = lab.last_event()
        before = anonymous_kilobytes(agent)
        for _ in range(100):
            after = lab.event("checkin", after, 60)["id"]
        return before, anonymous_kilobytes(agent) - before


def system_calls(lab, build, folder):
    """Names of the system calls from the end of one sleep to the end of the next."""
    out = folder.with_suffix(".calls")
    with switch_at(lab, build, folder, 30) as process:
        tracer = subprocess.Popen(
            ["strace", "-f", "-qq", "-o", str(out), "-p", str(child_of(process.child.pid))])
        after = lab.last_event()
        for _ in range(3):
            after = lab.event("checkin", after, 60)["id"]
        tracer.terminate()
        tracer.wait()
    calls = [match.groups() for match in map(CALL.match, out.read_text().splitlines()) if match]
    main = next(thread for thread, name, rest in calls if name == "sendto")
    mine = [(name, rest) for thread, name, rest in calls if thread == main]
    sleeps = [i for i, (name, rest) in enumerate(mine) if name == "ppoll" and "NULL" in rest]
    return collections.Counter(name for name, _ in mine[sleeps[-2] + 1:sleeps[-1]])


def main(build):
    with lab_cloud(build) as (lab, folder):
        for name, trace in (("without --trace", None), ("with --trace", folder / "trace.log")):
            start, more = growth(lab, build, folder / name.replace(" ", "_"), trace)
            print(f"{name:18} {start:6} kB a switch, {more / 100:6.2f} kB more a check-in")
        calls = system_calls(lab, build, folder / "traced")
        print(f"{sum(calls.values())} system calls a check-in: " +
              ", ".join(f"{count} {name}" for name, count in calls.most_common()))


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve())
