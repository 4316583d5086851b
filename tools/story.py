"""The story that `./run --once` plays: a switch checks in, is configured, refuses, is told, moves.

Each step says what was seen; one that does not see what it should raises Failed."""
import time

from make_image import make_image
import wire_schema
from workbench import Failed


def expect(condition, what):
    if not condition:
        raise Failed(what)


def member(document, *path):
    for key in path:
        document = document[key] if isinstance(document, dict) else {}
    return document


def port_of(report, name):
    return next(port for port in member(report, "system", "ports") if port["id"] == name)


class Story:
    """The steps share the lab, the switch, and the id of the last event they looked at."""

    def __init__(self, lab, switch, say):
        self.lab, self.switch, self.say = lab, switch, say
        self.after = 0

    def event(self, kind, seconds=20, **details):
        event = self.lab.event(kind, self.after, seconds, lambda e: all(
            e.get(key) == value for key, value in details.items()))
        self.after = event["id"]
        return event

    def mark(self):
        """What is waited for from here on happens after now."""
        self.after = self.lab.last_event()

    def deliver(self, document, bad=False):
        number = self.lab.queue_settings(document, bad)
        self.event("settings-delivered", config_seqno=number)
        return number

    def apply(self, document):
        """Settings are queued, delivered, and acknowledged; the report that did it."""
        number = self.deliver(document)
        self.event("settings-acknowledged", config_seqno=number)
        return number, self.lab.report()

    def push(self, **action):
        """An action is pushed and a check-in follows; the seconds between."""
        self.mark()
        started = time.monotonic()
        self.lab.push(**action)
        answered = self.event("action-answered")
        self.event("checkin")
        return time.monotonic() - started, answered

    # --- The steps, in their order.

    def first_checkin(self):
        event = self.event("checkin", 30)
        self.say(f"signature verified, {event['bytes']} bytes, sections "
                 f"{', '.join(event['sections'])}")
        summary = member(self.lab.report(), "system", "summary_info")
        self.say(f"it is \"{summary['device_name']}\", a {summary['model']} with "
                 f"{summary['total_ports']} ports, firmware {summary['firmware_version']}")

    def settings_round_trip(self):
        number, report = self.apply({"system": {
            "summary_info": {"device_name": "Lobby-1"},
            "cloud": {"checkin_interval": 120},
            "jumbo_frames": {"size": 9000}}})
        seen = (member(report, "system", "summary_info", "device_name"),
                member(report, "system", "cloud", "checkin_interval"),
                member(report, "system", "jumbo_frames", "size"))
        expect(seen == ("Lobby-1", 120, 9000), f"the report shows {seen}")
        saved = member(self.switch.startup_config(), "system", "name")
        expect(saved == "Lobby-1", f"the startup configuration has the name {saved!r}")
        self.say(f"settings {number}: name, interval and frame size applied, saved, acknowledged "
                 "by number in the next report")

    def refusal(self):
        acknowledged = member(self.lab.report(), "system", "cloud", "config_seqno")
        document = {"system": {"jumbo_frames": {"size": 20000}}}
        reason = self.lab.refuse_settings(document)
        expect(reason.startswith("/system/jumbo_frames/size: "), f"the lab's reason is {reason!r}")
        self.say(f"the lab queues no frame size of 20000 bytes unless told to: "
                 f"{reason.split(';')[0]}")
        number = self.deliver(document, bad=True)
        self.event("checkin", config_seqno=acknowledged)
        report = self.lab.report()
        expect(member(report, "system", "jumbo_frames", "size") == 9000, "the frame size changed")
        self.lab.withdraw_settings(number)
        self.say(f"settings {number}: a frame size of 20000 bytes refused, 9000 kept, the switch "
                 f"still reports number {acknowledged}")

    def pushed_checkin(self):
        seconds, _ = self.push(action="checkin")
        expect(seconds < 1, f"the check-in came after {seconds:.2f} s")
        self.say(f"a pushed \"checkin\" was performed after {seconds * 1000:.0f} ms")

    def local_request(self):
        self.mark()
        self.switch.request({"system": {"summary_info": {"device_name": "Lobby-2"}}})
        self.wait_for_report("device name Lobby-2", lambda r: member(
            r, "system", "summary_info", "device_name") == "Lobby-2")
        expect(self.switch.request_is_gone(), "the request file is still there")
        self.say("a local request renamed the switch on SIGUSR1; its file is gone")

    def wait_for_report(self, what, condition, seconds=20):
        end = time.monotonic() + seconds
        while not condition(self.lab.report()):
            if time.monotonic() > end:
                raise Failed(f"no report with {what} within {seconds} s")
            self.event("checkin", seconds)

    def keeper_host(self):
        port = self.lab.ports["keeper"][1]
        self.mark()
        before = self.after
        self.apply({"system": {"cloud": {"connkeeper_host": f"localhost:{port}"}}})
        self.after = before  # the thread moves before the acknowledgement is sent
        self.event("poll", port=port)
        seconds, answered = self.push(action="checkin")
        expect(answered.get("port") == port, f"the push was answered on port {answered.get('port')}")
        expect(seconds < 1, f"the check-in came after {seconds:.2f} s")
        self.say(f"the keeper thread was restarted on localhost:{port}; a push there was performed "
                 f"after {seconds * 1000:.0f} ms")

    def ports(self):
        report = self.lab.report()
        ports = member(report, "system", "ports")
        up = [port["id"] for port in ports if port["status"] == 1]
        power = sum(port["poe"]["power_draw"] for port in ports if "poe" in port)
        self.say(f"{len(ports)} ports, up: {', '.join(up) or 'none'}; {power:.1f} W of "
                 f"{member(report, 'system', 'poe', 'total_power_watts')} W drawn")
        # A port's own VLAN is set before its lists, which make the VLAN: hence two elements.
        number, report = self.apply({"system": {"ports": [
            {"id": "2", "link_speed_mode": 2, "untagged_vlans": "20", "poe": {"priority": 1}},
            {"id": "2", "pvid": 20}]}})
        seen = tuple(member(port_of(report, "2"), key) for key in
                     ("link_speed_mode", "pvid", "untagged_vlans"))
        expect(seen == (2, 20, "20"), f"the report shows {seen} on port 2")
        self.say(f"settings {number}: port 2 forced to 100 Mbit/s full duplex and moved to VLAN 20, "
                 "which was made for it")

    def traffic(self):
        number, report = self.apply({
            "qos": {"scheduling_method": 1, "cos": [{"id": 5, "queue": 8}]},
            "system": {"link_aggregation": [{"id": 1, "mode": 1, "members": "5-6"}]}})
        queue = member(report, "qos", "cos")[5]["queue"]
        group = member(report, "system", "link_aggregation")[0]
        expect(queue == 8, f"CoS 5 is in queue {queue}")
        expect((group["mode"], group["members"]) == (1, "5-6"), f"group 1 is {group}")
        self.say(f"settings {number}: CoS 5 goes to queue 8, ports 5 and 6 are aggregated as group 1")

    def firmware_upgrade(self):
        def running(report):
            return member(report, "system", "summary_info", "firmware_version")

        before = running(self.lab.report())
        self.lab.put_firmware("v2.bix", make_image("2.0.0"))
        self.mark()
        number, report = self.apply({"system": {"firmware": {
            "upgrade_partition": 2, "upgrade_url": self.lab.firmware_url("v2.bix"),
            "active_partition": 2}}})
        expect(member(report, "system", "firmware", "version_partition_2") == "2.0.0",
               "the image is not in partition 2")
        self.wait_for_report("firmware 2.0.0", lambda r: running(r) == "2.0.0")
        self.say(f"settings {number}: an image was downloaded, written to partition 2 and read back")
        self.say(f"the switch rebooted from firmware {before} into 2.0.0")

    def diagnostic(self, **action):
        """What a pushed diagnosis found, line by line where it is text."""
        self.push(**action)
        result = member(self.lab.report(), "diagnostic", action["action"])
        expect(result, f"no result of {action['action']} was reported")
        return result.split("\\r\\n") if isinstance(result, str) else result

    def diagnostics(self):
        cable = self.diagnostic(action="cable_test", port="1")
        expect(cable["port"] == 1, f"port {cable['port']} was tested")
        self.say(f"the cable at port 1 was tested: pair A has state {cable['pair_a']}, "
                 f"{cable['cable_a_length_m']} m")
        lines = self.diagnostic(action="ping_ipv4", host="192.168.1.1", count=3, interval=1,
                                size=56)
        lost = next((line for line in lines if "packet loss" in line), "")
        expect("3 packets received" in lost, f"the ping said {lost!r}")
        self.say(f"it pinged its gateway: {lost}")
        lines = self.diagnostic(action="traceroute", host="www.example.com", hops=10)
        expect("www.example.com (192.0.2.80)" in lines[-2], f"the way ended at {lines[-2]!r}")
        self.say(f"it traced the way to www.example.com: {lines[-2].split()[0]} hops")

    def every_report(self):
        count = 0
        for number, report in self.lab.reports():
            faults = list(wire_schema.report_faults(report, "whole"))
            expect(not faults, f"report {number}: {'; '.join(faults)}")
            count += 1
        expect(count > 0, "the lab has no report")
        self.say(f"{count} reports validate against docs/schema/whole_report.schema.json")


STEPS = (
    ("A switch checks in", Story.first_checkin),
    ("It is configured", Story.settings_round_trip),
    ("It refuses a bad setting", Story.refusal),
    ("It is told to check in", Story.pushed_checkin),
    ("It takes a local request", Story.local_request),
    ("It diagnoses", Story.diagnostics),
    ("Its connection keeper moves", Story.keeper_host),
    ("Its ports are shown and changed", Story.ports),
    ("Its traffic is arranged", Story.traffic),
    ("It gets new firmware", Story.firmware_upgrade),
    ("Every report was as it should be", Story.every_report),
)


def play(lab, switch, say):
    """Plays every step; true when all of it happened."""
    story = Story(lab, switch, lambda text: say(f"      {text}"))
    for number, (title, step) in enumerate(STEPS, 1):
        say(f"{number:2}. {title}")
        try:
            step(story)
        except Failed as failure:
            say(f"      FAILED: {failure}")
            return False
    return True
