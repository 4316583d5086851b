"""What a check-in asks of the kernel, and what the agent asks between two."""
import collections
import os
import pathlib
import re
import subprocess

from end_to_end import EndToEnd

CALL = re.compile(r"^(\d+) +(\w+)\((.*)")
# How the C library and the sanitizers keep memory and locks is theirs.
MEMORY = {"brk", "mmap", "munmap", "mremap", "mprotect", "madvise", "futex", "sched_yield"}


class CheckIn(EndToEnd):
    speed = 60

    def setUp(self):
        super().setUp()
        # The search for leaks cannot be under a tracer; other tests make it.
        before = os.environ.get("ASAN_OPTIONS")
        os.environ["ASAN_OPTIONS"] = f"{before or ''}:detect_leaks=0"
        self.addCleanup(os.environ.__setitem__, "ASAN_OPTIONS", before or "")

    def agent(self):
        supervisor = self.switch.process.child.pid
        children = pathlib.Path(f"/proc/{supervisor}/task/{supervisor}/children")
        return children.read_text().split()[0]

    def trace_file(self, agent):
        """The descriptor of the simulated switch's own trace."""
        for link in pathlib.Path(f"/proc/{agent}/fd").iterdir():
            if os.readlink(link).endswith("trace.log"):
                return link.name
        raise AssertionError("no trace is written")

    def calls_of_three_check_ins(self):
        """(thread, name, rest of the line), without what is the trace's and the memory's."""
        out = self.path("calls")
        agent = self.agent()
        trace = f"{self.trace_file(agent)},"
        tracer = subprocess.Popen(["strace", "-f", "-qq", "-o", str(out), "-p", agent])
        try:
            self.wait("the tracer is there",
                      lambda: "TracerPid:\t0" not in pathlib.Path(f"/proc/{agent}/status").read_text())
            for _ in range(3):
                self.next_checkin()
        finally:
            tracer.terminate()
            tracer.wait()
        lines = map(CALL.match, out.read_text(errors="replace").splitlines())
        calls = [line.groups() for line in lines if line]
        return [(thread, name, rest) for thread, name, rest in calls
                if name not in MEMORY and not (name == "write" and rest.startswith(trace))]

    def test_a_check_in_takes_few_calls_and_the_keeper_none(self):
        self.start()
        calls = self.calls_of_three_check_ins()
        main = next(thread for thread, name, _ in calls if name == "sendto")
        sleeps = [i for i, (thread, name, rest) in enumerate(calls)
                  if thread == main and name == "ppoll" and "NULL" in rest]
        self.assertGreaterEqual(len(sleeps), 2)
        whole = calls[sleeps[-2] + 1:sleeps[-1]]
        own = collections.Counter(name for thread, name, _ in whole if thread == main)
        # The transfer and its TLS, the address file, the firmware images of the simulated switch,
        # and the signal mask around the sleep.
        self.assertLessEqual(sum(own.values()), 125, own)
        # The TLS library asks, to know a copy of the process; the agent does not.
        self.assertLessEqual(own["getpid"], 10, own)
        self.assertEqual([], [name for thread, name, _ in whole if thread != main])
