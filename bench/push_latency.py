"""From the lab's push to the platform call that it causes on a switch, against an answered long-poll
of a bare client in the same run, turn by turn.

    bench/push_latency.py BUILD [PUSHES]"""
import os
import pathlib
import statistics
import sys
import time

from pair import BARE_MAC, MAC, bare_client, lab_cloud, listen_url, spread, switch_at

LIMIT = 1.2
SPEED = 30
ACTION = {"action": "counter_reset", "port": "1"}
CALL = b"sal_mib_cntr_clr("


class Lines:
    """Lines from a pipe as they come; each read ends at the first that begins so."""

    def __init__(self, descriptor):
        self.descriptor = descriptor
        self.rest = b""

    def wait_for(self, beginning):
        while True:
            line, end, rest = self.rest.partition(b"\n")
            if not end:
                more = os.read(self.descriptor, 65536)
                if not more:
                    raise EOFError(beginning)
                self.rest += more
                continue
            self.rest = rest
            if line.startswith(beginning):
                return


def push_and_wait(lab, mac, lines, beginning):
    """Milliseconds."""
    begin = time.perf_counter()
    lab.ask("POST", f"/switches/{mac}/actions", ACTION)
    lines.wait_for(beginning)
    return 1000 * (time.perf_counter() - begin)


def quartile(times):
    """The lower one: what else the machine does makes single pushes slow, and none fast."""
    return statistics.quantiles(times, n=4)[0]


def main(build, pushes):
    with lab_cloud(build) as (lab, folder):
        pipe = folder / "trace"
        os.mkfifo(pipe)
        descriptor = os.open(pipe, os.O_RDWR) # never at its end
        with switch_at(lab, build, folder / "switch", SPEED, pipe), \
                bare_client(build / "bench/bare_transfers", listen_url(lab, BARE_MAC)) as bare:
            trace, answers = Lines(descriptor), Lines(bare.stdout.fileno())
            switch, client = [], []
            for turn in range(pushes + 1):
                client.append(push_and_wait(lab, BARE_MAC, answers, b"answer 0"))
                switch.append(push_and_wait(lab, MAC, trace, CALL))
                trace.wait_for(b"listen(") # after the check-in that follows
                time.sleep(0.1)
            del client[0], switch[0] # the listeners' first requests may not have come yet
    ratio = quartile(switch) / quartile(client)
    print(f"{pushes} pushes: the switch's platform call after {spread(switch, 'ms')}")
    print(f"{pushes} pushes: the bare client's answer after   {spread(client, 'ms')}")
    print(f"ratio of the lower quartiles {ratio:.2f} (limit {LIMIT})")
    return 0 if ratio <= LIMIT else 1


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]) if sys.argv[2:] else 30))
