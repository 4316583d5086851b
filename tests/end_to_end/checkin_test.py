"""Check-ins: first, settings, acknowledgement, refusal, fallback, clock, restart."""
import os
import signal
import unittest.mock

from end_to_end import EndToEnd

DEAD_PROXIES = {name: "http://127.0.0.1:9"
                for name in ("http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY")}


def name_of(report):
    return report["system"]["summary_info"]["device_name"]


class CheckIn(EndToEnd):
    def test_the_first_one_is_signed_and_whole(self):
        self.switch.start()
        event = self.event("checkin")
        self.assertGreater(event["bytes"], 100)
        report = self.lab.report()
        self.assertEqual(report["system"]["summary_info"]["mac"], "02:1B:2C:3D:4E:5F")
        self.assertEqual(report["system"]["cloud"]["config_seqno"], 1)
        self.assertEqual(self.lab.ask("GET", "/stats")["counters"].get("rejected", 0), 0)

    @unittest.mock.patch.dict(os.environ, DEAD_PROXIES)
    def test_no_proxy_of_the_environment_is_asked(self):
        after = self.start()
        self.lab.push(action="counter_reset", port="1")
        self.event("checkin", after)

    def test_settings_are_applied_saved_and_acknowledged(self):
        self.start()
        report = self.apply({"system": {"summary_info": {"device_name": "Roof"},
                                        "jumbo_frames": {"size": 4096}}})
        self.assertEqual(name_of(report), "Roof")
        self.assertEqual(report["system"]["jumbo_frames"]["size"], 4096)
        self.assertEqual(self.switch.startup_config()["system"]["name"], "Roof")

    def test_a_refused_setting_is_not_acknowledged(self):
        self.start()
        number = self.lab.queue_settings({"system": {"jumbo_frames": {"size": 1521}}}, bad=True)
        delivered = self.event("settings-delivered", config_seqno=number)
        self.event("checkin", delivered["id"], config_seqno=1)
        self.assertNotEqual(self.lab.report()["system"]["jumbo_frames"]["size"], 1521)

    def test_a_wrong_secret_is_answered_403_until_it_is_right(self):
        self.lab.ask("PUT", "/switches/02:1B:2C:3D:4E:5F", {"key": "lab-key", "secret": "other"})
        self.switch.start()
        rejected = self.event("rejected", code="signature")
        self.lab.ask("PUT", "/switches/02:1B:2C:3D:4E:5F",
                     {"key": "lab-key", "secret": "lab-secret"})
        self.event("checkin", rejected["id"])

    def test_a_refusing_host_leads_to_the_fallback_host(self):
        first, second = self.lab.ports["https"]
        self.lab.misbehave("refuse", listener="checkin", port=first)
        self.switch.start()
        self.event("checkin", seconds=60)
        transfers = self.wait("the transfer to be traced", self.seven_transfers)
        self.assertEqual(transfers[:6], [
            f"transfer(\"https://localhost:{first}/cloud-switch/02:1B:2C:3D:4E:5F/checkin\") = 7"
        ] * 6)
        self.assertIn(f"localhost:{second}", transfers[6])

    def seven_transfers(self):
        transfers = [line for line in self.switch.trace() if line.startswith("transfer")]
        return transfers if len(transfers) >= 7 else None

    def test_an_expired_certificate_has_the_clock_corrected(self):
        self.lab.misbehave("expired", listener="checkin", port=self.lab.ports["https"][0])
        self.switch.start()
        self.event("time")
        self.wait("the clock is set", lambda: any(
            line.startswith("clock_settime") for line in self.switch.trace()))
        self.lab.behave()
        self.event("checkin", seconds=60)

    def test_saved_settings_survive_a_restart_of_the_switch(self):
        self.start()
        self.apply({"system": {"summary_info": {"device_name": "Kept"}}})
        self.switch.stop(signal.SIGKILL)
        after = self.lab.last_event()
        self.switch.start()
        self.event("checkin", after)
        report = self.lab.report()
        self.assertEqual(name_of(report), "Kept")
        self.assertEqual(report["system"]["cloud"]["config_seqno"], 2)


class BadReplies(EndToEnd):
    """Whatever comes back, the settings stay as they were and the next check-in works."""

    def misbehaviour(self, mode, **how):
        self.start()
        before = name_of(self.lab.report())
        self.lab.queue_settings({"system": {"summary_info": {"device_name": "Never"}}})
        self.lab.misbehave(mode, listener="checkin", **how)
        self.switch_transfers = len(self.transfers())
        self.wait("the agent met it", lambda: len(self.transfers()) > self.switch_transfers + 1)
        self.lab.withdraw_settings(2)
        self.lab.behave()
        self.next_checkin()
        self.assertEqual(name_of(self.lab.report()), before)

    def transfers(self):
        return [line for line in self.switch.trace() if line.startswith("transfer")]

    def test_a_server_error(self):
        self.misbehaviour("status", status=500)

    def test_a_connection_closed_in_the_body(self):
        self.misbehaviour("truncate")

    def test_a_reset_connection(self):
        self.misbehaviour("reset")

    def test_a_certificate_of_an_unknown_authority(self):
        self.misbehaviour("unknown-ca")

    def test_a_certificate_of_another_name(self):
        self.misbehaviour("wrong-name")
