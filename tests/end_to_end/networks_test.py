"""The whole process on bad networks: it comes back, and takes no memory along."""
import os
import unittest.mock

from end_to_end import EndToEnd

# Freed memory is to be used again, as without a sanitizer.
THRIFTY = {"ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"}
MIB = 1 << 20


class BadNetworks(EndToEnd):
    def memory(self):
        """The most that the agent ever held, in bytes."""
        pid = (self.switch.root / "var/run/vx_cloud.pid").read_text()
        with open(f"/proc/{pid}/status") as status:
            return next(int(line.split()[1]) * 1024 for line in status if line.startswith("VmHWM"))

    def checkins(self):
        return sum(line.startswith("transfer(") for line in self.switch.trace())

    def meet(self, mode):
        """The next check-ins meet a misbehaviour, the ones after it do not."""
        before = self.checkins()
        self.lab.misbehave(mode)
        self.wait("the agent met it", lambda: self.checkins() > before + 1, 40)
        self.lab.behave()
        self.next_checkin()

    @unittest.mock.patch.dict(os.environ, THRIFTY)
    def test_no_reply_keeps_the_agent_away_or_takes_its_memory(self):
        self.start()
        self.apply({"system": {"cloud": {"timeout": 2, "connect_timeout": 2}}})
        before = self.memory()
        for mode in ("silent", "short-length", "redirect", "bomb", "endless", "endless-head"):
            with self.subTest(mode):
                self.meet(mode)
        self.assertLess(self.memory() - before, 16 * MIB)
