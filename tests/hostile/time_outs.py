"""How long a silent peer holds the agent up, in seconds of the wall."""
import time

from end_to_end import EndToEnd


class TimeOuts(EndToEnd):
    def ends(self, url_part):
        """The seconds between two transfers to such a URL that run into their time-outs."""
        def timed_out():
            return [line for line in self.switch.trace()
                    if line.startswith("transfer(") and url_part in line and line.endswith("= 28")]
        self.wait("the first time-out", timed_out, 300)
        began = time.monotonic()
        self.wait("the second", lambda: len(timed_out()) > 1, 300)
        return time.monotonic() - began

    def test_a_silent_cloud_holds_a_check_in_for_two_minutes(self):
        self.start()
        self.lab.misbehave("silent")
        self.assertAlmostEqual(self.ends("/checkin"), 120, delta=5)

    def test_a_silent_clock_holds_a_request_for_twenty_seconds(self):
        self.lab.misbehave("expired")
        self.lab.misbehave("silent", listener="plain")
        self.switch.start()
        self.assertAlmostEqual(self.ends("/time"), 20, delta=5)
        self.lab.behave()
        self.event("checkin", seconds=60)
