"""The timing of a herd is that of the agent: what a real one did is what the paper one does next."""
import json
import re
import unittest

from end_to_end import EndToEnd
import herd
from herd import (CERTIFICATE, CHECKIN, FAILED, FALLBACK, LISTEN, NO_CONNECT, NO_HOST, OK, REJECTED,
                  START_KEEPER, TIME, Agent, Outcome, Sleep, Transfer)

STEP = re.compile(r'(sleep|transfer|listen)\("?([^")]*)"?\) = (\d+)')
RESULTS = {0: OK, 6: NO_HOST, 7: NO_CONNECT, 60: CERTIFICATE}


class Timing(EndToEnd):
    speed = 2000
    reports_are = None

    def setUp(self):
        super().setUp()
        self.hosts = self.lab.cloud()
        self.checkin_url = f"https://{self.hosts.checkin}/cloud-switch/02:1B:2C:3D:4E:5F/checkin"

    def kind_of(self, url):
        if "/router/listen/" in url:
            return LISTEN
        if url.endswith("/time"):
            return TIME
        return CHECKIN if self.hosts.checkin in url else FALLBACK

    def steps(self, count):
        """What the agent did: the first sleeps and transfers, and what these came to."""
        def done():
            found = [STEP.match(line) for line in self.switch.trace()]
            found = [step.groups() for step in found if step]
            return found[:count] if len(found) >= count else None
        for what, argument, result in self.wait(f"{count} steps", done, 60):
            if what == "sleep":
                yield Sleep(int(argument)), Outcome(None)
            else:
                yield Transfer(self.kind_of(argument)), Outcome(RESULTS.get(int(result), FAILED))

    def expect_main(self, count, became=lambda transfer, outcome, number: outcome):
        """Holds them against those of the main thread. `became` tells what a trace does not: what
        the status and the reply of a transfer were, by its number."""
        agent = Agent(self.switch_interval())
        main = agent.main()
        wanted, transfers = next(main), 0
        for position, (step, outcome) in enumerate(self.steps(count)):
            if step == Transfer(LISTEN):
                continue
            if wanted is START_KEEPER:
                wanted = main.send(None)
            self.assertEqual(wanted, step, f"step {position}")
            if isinstance(step, Transfer):
                transfers += 1
                outcome = became(step, outcome, transfers)
            wanted = main.send(outcome)

    def switch_interval(self):
        return self.scenario.get("cloud", {}).get("checkin_interval", herd.INTERVAL)

    def start_with(self, *faults):
        self.switch.options = [word for fault in faults for word in ("--fault", fault)]
        self.switch.start()


class Herd(Timing):
    def test_settings_are_followed_by_a_check_in_at_once_and_else_by_the_interval(self):
        self.lab.queue_settings({"lldp": {}})
        self.switch.start()

        def became(step, outcome, number):
            return outcome._replace(reply={}) if number > 1 else Outcome(OK, {"lldp": {}})
        self.expect_main(9, became)

    def test_refused_connections_weigh_two_then_comes_the_fallback_host(self):
        self.start_with(f"transfer:{self.checkin_url}#1+=7")
        self.expect_main(34)

    def test_names_that_are_not_found_weigh_one(self):
        self.start_with(f"transfer:{self.checkin_url}#1+=6")
        self.expect_main(28)

    def test_both_together_reach_the_same_weight(self):
        self.start_with(*(f"transfer:{self.checkin_url}#{n}={6 + n % 2}" for n in range(1, 20)))
        self.expect_main(30)

    def test_without_any_connection_the_pause_takes_the_place_of_the_interval(self):
        fallback_url = self.checkin_url.replace(self.hosts.checkin, self.hosts.fallback)
        self.start_with(f"transfer:{self.checkin_url}#1+=7", f"transfer:{fallback_url}#1+=7")
        self.expect_main(40)

    def test_a_bad_certificate_costs_a_time_request_and_two_without_an_answer(self):
        time_url = f"http://{self.hosts.fallback}/time"
        self.start_with(f"transfer:{self.checkin_url}#1+=60", f"transfer:{time_url}#1=28",
                        f"transfer:{time_url}#2=28", f"transfer:{time_url}#3=28")
        self.expect_main(24)

    def test_a_server_error_leads_to_the_fallback_host_and_a_refusal_does_not(self):
        self.lab.misbehave("status", status=503, port=self.lab.ports["https"][0], count=1)
        self.switch.start()
        self.expect_main(6, lambda step, outcome, number: Outcome(FAILED) if number == 1
                         else outcome)
        self.switch.stop()
        self.lab.misbehave("status", status=403, port=self.lab.ports["https"][0])
        (self.switch.root / "trace.log").unlink()
        self.switch.start()
        self.expect_main(12, lambda step, outcome, number: Outcome(REJECTED))

    def test_transfers_have_the_agents_time_limits(self):
        transfers = self.switch.root / "transfers.json"
        self.switch.options = ["--transfers", str(transfers),
                               "--fault", f"transfer:{self.checkin_url}#1=60"]
        self.switch.start()
        self.lab.event("poll", 0)
        self.lab.push(action="checkin")

        def limits():
            lines = transfers.read_text().splitlines() if transfers.exists() else ()
            found = {self.kind_of(line["url"]): line["time_limit"]
                     for line in map(json.loads, lines)}
            return found if len(found) == 4 else None
        self.assertEqual(herd.TIME_LIMITS, self.wait("a transfer of each kind", limits))


class Keeper(Timing):
    scenario = {"cloud": {"checkin_interval": 86400}}
    speed = 500

    def test_an_answered_poll_is_followed_by_the_next_and_a_failed_one_by_a_pause(self):
        port = self.lab.ports["keeper"][0]
        self.lab.misbehave("reset", listener="keeper", port=port, count=2)
        self.switch.start()
        self.event("poll")
        self.event("checkin")
        self.lab.push(action="counter_reset", port="1")
        seen = [step for step, _ in self.steps(10)
                if step not in (Sleep(30), Sleep(2), Sleep(86400))]
        keeper, steps = Agent().keeper(), []
        step = next(keeper)
        for outcome in (Outcome(FAILED), None, Outcome(FAILED), None,
                        Outcome(OK, {"action": "counter_reset"}), Outcome(OK)):
            steps.append(step)
            step = keeper.send(outcome)
        self.assertEqual(sorted(map(str, [*steps, step, Transfer(CHECKIN)])),
                         sorted(map(str, seen)))


if __name__ == "__main__":
    unittest.main()
