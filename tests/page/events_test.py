"""Events as they happen, and what the lab does wrong on purpose."""
import urllib.request

import fleet
from browser import MAC, PageTest

STRANGER = "02:AB:00:00:00:42"


class Events(PageTest):
    def test_what_happens_shows_without_a_reload(self):
        self.open("#/events")
        self.find(".event", "checked in")
        self.lab.push(action="checkin")
        self.find(".event", 'queued: {"action": "checkin"}')
        self.check_view("events")

    def test_the_log_is_filtered_by_switch_and_kind(self):
        self.lab.ask("PUT", f"/switches/{STRANGER}", {"key": "k", "secret": "s"})
        self.open("#/events")
        self.find(".event", f"{STRANGER} registered")
        self.choose("main select", "checkin")
        self.wait("check-ins only", lambda: {"checkin"} == {
            chip.text for chip in self.all(".event .chip")})
        self.choose("main select", "")
        self.script("const field = document.querySelector('main input'); field.value = arguments[0];"
                    "field.dispatchEvent(new Event('change'))", STRANGER)
        self.wait("one switch only", lambda: self.all(".event") and all(
            STRANGER in event.text for event in self.all(".event")))
        self.lab.push(action="checkin")
        self.lab.ask("PUT", f"/switches/{STRANGER}", {"key": "k", "secret": "other"})
        self.find(".event", "has new credentials")
        self.assertTrue(all(STRANGER in event.text for event in self.all(".event")))
        self.open(f"#/switch/{MAC}/events")
        self.find(".event", "checked in")
        self.assertTrue(all(MAC in event.text for event in self.all(".event")))

    def test_a_refusal_tells_what_was_wrong_and_what_was_expected(self):
        context = fleet.trusting(self.lab)
        self.lab.ask("PUT", f"/switches/{STRANGER}", {"key": "lab-key", "secret": "another"})
        self.assertEqual(403, fleet.check_in(self.lab, context, STRANGER, {"system": {}}))
        self.open("#/events")
        told = self.find(".event.alarm", "signature: ").text
        self.assertIn("does not match HMAC-SHA256", told)
        self.assertIn("Expected\nHMAC-SHA256, keyed with the account's secret", told)
        self.open()
        row = self.find(f"tr[data-mac='{STRANGER}']", "Refused").text
        self.assertIn("the signature does not match", row)
        self.assertEqual(403, fleet.check_in(self.lab, context, "02:AB:00:00:00:43", {"system": {}}))
        self.find(".strangers", "02:AB:00:00:00:43")
        self.look(1280, height=620)
        self.picture("doc-refused", whole=False)
        self.check_view("switches-refused")
        self.press(".strangers a", "Register it")
        self.wait("the MAC is filled in", lambda: self.find("form input").get_property("value")
                  == "02:AB:00:00:00:43")


class Misbehaviour(PageTest):
    def tearDown(self):
        self.lab.behave()
        super().tearDown()

    def test_it_is_switched_on_and_off_and_cannot_be_overlooked(self):
        self.open("#/misbehaviour")
        self.find(".right", "The lab behaves.")
        self.assertFalse(self.all(".banner"))
        self.press("form button", "Misbehave")
        self.find(".banner", "The reply is an error, and nothing is processed (503)")
        self.assertEqual([("status", 503)], [(entry["mode"], entry["status"])
                                             for entry in self.lab.ask("GET", "/misbehave")])
        self.check_view("misbehaviour")
        for place in ("#/", "#/events", f"#/switch/{MAC}/ports"):
            self.open(place)
            self.find(".banner", "The lab misbehaves on purpose.")
        self.press(".banner button", "Behave again")
        self.wait("no banner", lambda: not self.all(".banner"))
        self.assertEqual([], self.lab.ask("GET", "/misbehave"))

    def test_certificates_are_shown_at_check_in_only(self):
        self.open("#/misbehaviour")
        self.choose("main select", "expired")
        self.assertFalse(self.all("main select")[1].is_enabled())
        self.press("form button", "Misbehave")
        self.find(".banner", "The certificate has expired: Check-in")


class CountedMisbehaviour(PageTest):
    scenario = None  # nobody else connects

    def test_what_is_counted_ends_by_itself(self):
        self.open("#/misbehaviour")
        self.choose("main select", "slow")
        self.find("main select option[value=plain]").click()
        for label, text in (("For how many connections", "1"), ("Bytes at a time", "500")):
            self.type_into("#" + self.find("label", label).get_attribute("for"), text)
        self.press("form button", "Misbehave")
        self.find(".banner", "500 bytes every 50 ms")
        time_service = f"http://127.0.0.1:{self.lab.ports['http']}/time"
        urllib.request.urlopen(time_service, timeout=20).close()
        self.wait("it is over", lambda: not self.all(".banner"))


class TheLab(PageTest):
    scenario = None
    refusals_expected = True

    def value(self, label, text):
        self.type_into("#" + self.find("label", label).get_attribute("for"), text)

    def test_accounts_rules_and_counters(self):
        self.open("#/lab/register")
        self.find("h2", "Counted")
        self.check_view("lab")
        self.value("MAC", STRANGER)
        self.value("Key", "k")
        self.value("Secret", "s")
        self.press("form button", "Register")
        self.find("h1", STRANGER)
        self.find(".empty", "This switch has not checked in yet.")
        self.assertEqual(STRANGER, self.lab.ask("GET", f"/switches/{STRANGER}")["mac"])
        self.open("#/lab")
        self.value("Seconds between two deliveries", "3")
        self.press("form button", "Set")
        self.wait("set", lambda: self.lab.ask("GET", "/config")["redeliver_seconds"] == 3)
        self.value("MAC", "no MAC")
        self.value("Key", "k")
        self.value("Secret", "s")
        self.press("form button", "Register")
        self.find(".notice.wrong", "is not a MAC")
        self.value("MAC", STRANGER)
        self.press("form button", "Forget")
        self.press("dialog button", "Forget the switch")
        self.wait("forgotten", lambda: STRANGER not in [
            entry["mac"] for entry in self.lab.ask("GET", "/switches")])

    def test_images_are_uploaded_and_deleted(self):
        image = self.folder / "v2.bix"
        image.write_bytes(b"image")
        self.open("#/lab")
        self.find("input[type=file]").send_keys(str(image))
        self.press("button", "Upload")
        self.find(".log li", "v2.bix")
        self.assertEqual([{"name": "v2.bix", "bytes": 5}], self.lab.ask("GET", "/firmware"))
        self.press(".log button", "Delete")
        self.wait("deleted", lambda: self.lab.ask("GET", "/firmware") == [])
