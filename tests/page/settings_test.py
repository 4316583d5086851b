"""Settings: the editor and what it knows, the forms, the way of a document."""
import copy
import json

from selenium.webdriver.common.keys import Keys

import wire_schema
from browser import MAC, PageTest

PLACE = f"#/switch/{MAC}/settings"

GOOD = {"system": {"ports": [{"id": "3", "untagged_vlans": "20", "poe": {"priority": 2}},
                             {"id": "trunk1", "enable": True}],
                   "summary_info": {"device_name": "Lobby-1"},
                   "stp": {"priority": 4096}, "reboot": False,
                   "cloud": {"key": "k", "secret": "s"},
                   "snmp": {"communities": [{"name": "m", "access": 1, "action": 1}],
                            "trap": [{"host": "h", "version": "v2c", "notify_type": "informs",
                                      "community_name": "m", "action": 1}]},
                   "link_aggregation": [{"id": 1, "mode": 2, "members": "9-10"}]},
        "qos": {"cos": [{"id": 5, "queue": 7}]},
        "acl": {"mac_ace": [{"acl_name": "p", "sequence": 1, "method": 1, "action": 1,
                             "vlan_id": -1}]}}

# Where a good document is spoilt, and with what.
SPOILT = (
    (("system", "ports", 0, "id"), "F3"), (("system", "ports", 0, "id"), 3),
    (("system", "ports", 0, "untagged_vlans"), "20,"), (("system", "ports", 0, "poe", "priority"), 4),
    (("system", "ports", 0, "colour"), "red"), (("system", "ports", 1, "rate_limit"), {}),
    (("system", "summary_info"), {}), (("system", "summary_info", "device_name"), "1st"),
    (("system", "stp", "priority"), 4097), (("system", "stp", "priority"), -4096),
    (("system", "stp", "priority"), 65536), (("system", "stp", "priority"), 4096.5),
    (("system", "reboot"), 1), (("system", "reboot"), None), (("system", "cloud"), {"key": "k"}),
    (("system", "cloud", "secret"), ""), (("system", "cloud", "key"), "k" * 116),
    (("system", "snmp", "communities", 0), {"name": "m", "action": 1}),
    (("system", "snmp", "trap", 0, "version"), "v1"), (("system", "snmp", "trap"), {}),
    (("system", "link_aggregation", 0), {"id": 1, "mode": 1}),
    (("system", "link_aggregation"), [{"id": 1, "mode": 0}] * 9),
    (("qos", "cos", 0, "queue"), 0), (("acl", "mac_ace", 0, "vlan_id"), 0),
    (("acl", "mac_ace", 0), {"acl_name": "p", "sequence": 1, "method": 1}), (("nothing",), {}),
)


def spoilt(way, value):
    document = copy.deepcopy(GOOD)
    place = document
    for step in way[:-1]:
        place = place[step]
    place[way[-1]] = value
    return document


class Editor(PageTest):
    def faults(self, text):
        """What the page's own judgement of a text is."""
        return self.driver.execute_async_script(
            "const [text, done] = arguments;"
            "Promise.all([import('/page/editor.js'), import('/page/schema.js')])"
            ".then(async ([editor, schema]) =>"
            " done(editor.faults_in(await schema.load_schema('settings'), text)))", text)

    def write(self, text):
        """Puts a text into the editor as if typed, with the cursor at the |."""
        self.find("textarea.code")
        before, _, after = text.partition("|")
        self.script(
            "const area = document.querySelector('textarea.code'); area.focus();"
            "area.value = arguments[0] + arguments[1];"
            "area.setSelectionRange(arguments[0].length, arguments[0].length);"
            "area.dispatchEvent(new InputEvent('input'));", before, after)

    def text(self):
        return self.find("textarea.code").get_property("value")

    def offers(self):
        return [offer.text.split()[0] for offer in self.all(".offers:not([hidden]) li")]

    def test_it_judges_as_the_schema_does(self):
        self.open(PLACE)
        self.assertEqual([], self.faults(json.dumps(GOOD)))
        self.assertEqual([], list(wire_schema.settings_faults(GOOD)))
        for way, value in SPOILT:
            with self.subTest(way=way, value=value):
                document = spoilt(way, value)
                self.assertTrue(list(wire_schema.settings_faults(document)))
                found = self.faults(json.dumps(document))
                self.assertTrue(found)
                names = " › ".join(str(step + 1 if isinstance(step, int) else step)
                                   for step in way)
                self.assertTrue(any(names in fault["where"] or fault["where"] in names
                                    for fault in found), found)

    def test_what_is_wrong_is_told_while_typing(self):
        self.open(PLACE)
        self.write('{\n  "system": {\n    "jumbo_frames": {"size": 10}\n  }\n}|')
        fault = self.find(".faults li", "must be at least 1522").text
        self.assertIn("Line 3", fault)
        self.assertIn("system › jumbo_frames › size", fault)
        send = self.find(".editor + .buttons button", "Queue")
        self.assertFalse(send.is_enabled())
        self.check_view("editor-refuses")
        self.write('{"system": {"jumbo_frames": {"size": 9000}}|')
        self.find(".faults li", "\",\" or \"}\" is expected here")
        self.write('{"system": {"jumbo_frames": {"size": 9000}}}|')
        self.find(".faults", "The schema has nothing against it.")
        self.assertTrue(send.is_enabled())

    def test_it_completes_names_and_values(self):
        self.open(PLACE)
        self.find(f"a[href='#/switch/{MAC}/actions']")
        self.write("{|}")
        self.key(Keys.CONTROL, Keys.SPACE)
        self.wait("all sections", lambda: self.offers() == ["acl", "qos", "vlan", "lldp", "system"])
        self.key("\"")
        self.key("s")
        self.wait("one left", lambda: self.offers()[:1] == ["system"])
        self.key(Keys.ENTER)
        self.wait("taken", lambda: self.text() == '{"system": {}}')
        self.key("\"")
        self.key("p")
        self.wait("members", lambda: self.offers()[:2] == ["ports", "port_mirror"])
        self.picture("editor-completes", whole=False)
        self.key(Keys.ENTER)
        self.write('{"system": {"ports": [{"id": |}]}}')
        self.key(Keys.CONTROL, Keys.SPACE)
        self.wait("the switch's own ports", lambda: self.offers()[:2] == ["1", "2"])
        self.write('{"system": {"ports": [{"id": "1", "poe": {"priority": |}}]}}')
        self.key(Keys.CONTROL, Keys.SPACE)
        self.wait("values", lambda: self.offers() == ["0", "1", "2", "3"])
        self.find(".offers li", "high")
        self.key(Keys.ARROW_DOWN)
        self.key(Keys.ARROW_DOWN)
        self.key(Keys.TAB)
        self.wait("taken", lambda: '"priority": 2}' in self.text())
        self.key(Keys.CONTROL, Keys.SPACE)
        self.key(Keys.ESCAPE)
        self.wait("closed", lambda: not self.offers())

    def test_a_member_that_is_there_is_not_offered_again(self):
        self.open(PLACE)
        self.find("textarea.code")
        self.write('{"system": {"dark_mode": true, "d|"}}')
        self.key(Keys.CONTROL, Keys.SPACE)
        self.wait("offers", lambda: self.offers() and "dark_mode" not in self.offers())
        self.assertIn("device_access", self.offers())


# A document, the report after it, and the members that the report contradicts.
VERDICTS = (
    ({"system": {"dark_mode": True}}, {"system": {"dark_mode": True}}, []),
    ({"system": {"dark_mode": True}}, {"system": {"dark_mode": False}}, ["system › dark_mode"]),
    ({"system": {"dark_mode": True}}, {"system": {}}, []),
    ({"System": {"Jumbo_Frames": {"size": 9000}}}, {"system": {"jumbo_frames": {"size": 1522}}},
     ["System › Jumbo_Frames › size"]),
    ({"system": {"cloud": {"key": "k", "secret": "s", "timeout": 5, "checkin_interval": 60}}},
     {"system": {"cloud": {"checkin_interval": 300}}}, ["system › cloud › checkin_interval"]),
    ({"system": {"cloud": {"checkin_url": "a"}}}, {"system": {"cloud": {"checkin_host": "b"}}},
     ["system › cloud › checkin_url"]),
    ({"system": {"reboot": True}}, {"system": {"reboot": False}}, []),
    ({"system": {"ports": [{"id": "3", "tagged_vlans": "1,2,3", "reset": True}]}},
     {"system": {"ports": [{"id": "3", "tagged_vlans": "1-3"}]}}, []),
    ({"system": {"ports": [{"id": "3", "pvid": 2}, {"id": "3", "pvid": 4}]}},
     {"system": {"ports": [{"id": "1", "pvid": 9}, {"id": "3", "pvid": 4}]}}, []),
    ({"system": {"ports": [{"id": "9", "pvid": 2}]}}, {"system": {"ports": [{"id": "1"}]}},
     ["system › ports › 9"]),
    ({"system": {"ports": [{"id": "1", "rate_limit": {"tx_limit_kbps": 5000, "rx_limit_kbps": 64}}]}},
     {"system": {"ports": [{"id": "1", "rate_limit": {
         "enable_tx": False, "tx_limit_kbps": 0, "enable_rx": True, "rx_limit_kbps": 32}}]}},
     ["system › ports › 1 › rate_limit › rx_limit_kbps"]),
    ({"system": {"snmp": {"communities": [{"name": "a", "access": 1, "action": 1},
                                          {"name": "b", "action": 2}]}}},
     {"system": {"snmp": {"communities": [{"name": "b", "access": 1}]}}},
     ["system › snmp › communities › a", "system › snmp › communities › b"]),
    ({"acl": {"mac_ace": [{"acl_name": "p", "sequence": 1, "method": 1, "action": 1,
                           "source_mac": "00-1b-a9-00-00-00"}]}},
     {"acl": {"mac_ace": [{"acl_name": "p", "sequence": 1, "action": 0,
                           "source_mac": "00:1B:A9:00:00:00"}]}}, ["acl › mac_ace › p 1 › action"]),
)


class Verdicts(PageTest):
    scenario = None

    def test_a_report_is_held_against_the_settings_before_it(self):
        self.open()
        for document, report, expected in VERDICTS:
            with self.subTest(document=document):
                found = self.driver.execute_async_script(
                    "const [document, report, done] = arguments;"
                    "import('/page/contradictions.js').then(({contradictions}) =>"
                    " done(contradictions(document, report).map(([way]) => way)))", document, report)
                self.assertEqual(expected, found)

    def test_large_counters_keep_every_digit(self):
        self.open()
        kept = self.driver.execute_async_script(
            "const done = arguments[0]; import('/page/api.js').then(({parse, print}) =>"
            " done(print(parse('{\"all\":18446744073709551615,\"few\":7}'))))")
        self.assertEqual('{"all":18446744073709551615,"few":7}', kept)


class Documents(PageTest):
    # Every check-in is the main loop's own: a pushed one may overlap it, and then either may tell of
    # settings what was so before.
    speed = 120
    lab_options = ("--redeliver-seconds", "1", "--redeliver-tries", "2")

    def document(self, number, state):
        return self.find(f".queue li[data-seqno='{number}'][data-state='{state}']", seconds=40)

    def queued(self):
        return self.lab.ask("GET", f"/switches/{MAC}/settings")

    def queue_in_editor(self, document):
        self.find("textarea.code")
        self.script("const area = document.querySelector('textarea.code'); area.value = arguments[0];"
                    "area.dispatchEvent(new InputEvent('input'));", json.dumps(document))
        before = len(self.queued())
        self.press(".editor + .buttons button", "Queue")
        self.wait("queued", lambda: len(self.queued()) > before)
        return self.queued()[-1]["config_seqno"]

    def test_a_document_is_shown_on_its_way(self):
        self.open(PLACE)
        number = self.queue_in_editor({"system": {"jumbo_frames": {"size": 9000}}})
        self.document(number, "acknowledged")
        self.assertEqual(["✓ Queued", "✓ Delivered", "✓ Acknowledged"], self.script(
            "return [...document.querySelectorAll(arguments[0])].map((step) => step.innerText)",
            f".queue li[data-seqno='{number}'] .steps li"))
        self.press(f".queue li[data-seqno='{number}'] summary")
        self.find(".inside .right", "contradicts nothing")
        self.find(".inside .log", "acknowledged settings")

    def test_a_press_that_has_begun_outlives_what_comes_in(self):
        self.open(PLACE)
        number = self.queue_in_editor({"system": {"jumbo_frames": {"size": 1522}}})
        self.find(f".queue li[data-seqno='{number}']")
        self.script("window.pressed = document.querySelector(arguments[0])",
                    f".queue li[data-seqno='{number}'] summary")
        self.document(number, "acknowledged")
        self.assertTrue(self.script("return window.pressed.isConnected"))

    def test_what_the_next_report_contradicts_is_named(self):
        self.open(PLACE)
        number = self.queue_in_editor({"system": {
            "dark_mode": True, "stp": {"priority": 8192},
            "port_mirror": [{"id": 1, "destination_port": 3, "source_rx_port": "3"}]}})
        self.document(number, "refused")
        self.press(f".queue li[data-seqno='{number}'] summary")
        self.find(".inside .wrong", "contradicts")
        told = self.find(".contradictions tbody").text
        self.assertIn("system › port_mirror › 1", told)
        self.assertNotIn("stp", told)
        self.check_view("settings")

    def test_daily_work_has_forms(self):
        self.open(PLACE)
        self.wait("the name", lambda: self.find("form input").get_property("value") == "Switch")
        self.type_into("form input", "Lobby-1")
        before = len(self.queued())
        self.press("form .buttons button", "Queue")
        self.wait("queued", lambda: len(self.queued()) > before)
        self.assertEqual({"system": {"summary_info": {"device_name": "Lobby-1"}}},
                         self.queued()[-1]["document"])
        self.open(f"{PLACE}/3")
        form = "form:nth-of-type(2)"
        self.wait("port 3", lambda: self.find(f"{form} select").get_property("value") == "3")
        self.press(f"{form} label", "Switched on")
        self.choose(f"{form} .grid select", "2")
        for field, text in (("VLAN of untagged frames", "20"), ("Untagged VLANs", "20"),
                            ("Tagged VLANs", "30-31"), ("PoE limit, watts", "15")):
            name = self.find(f"{form} label", field).get_attribute("for")
            self.type_into(f"#{name}", text)
        before = len(self.queued())
        self.press(f"{form} .buttons button", "Queue")
        self.wait("queued", lambda: len(self.queued()) > before)
        self.assertEqual({"system": {"ports": [
            {"id": "3", "enable": False, "link_speed_mode": 2, "tagged_vlans": "30-31",
             "untagged_vlans": "20", "poe": {"power_limit_type": 1, "power_limit_user": 15}},
            {"id": "3", "pvid": 20}]}}, self.queued()[-1]["document"])
        self.document(self.queued()[-1]["config_seqno"], "acknowledged")

    def test_a_document_is_withdrawn(self):
        stranger = "02:00:00:00:00:77"
        self.lab.ask("PUT", f"/switches/{stranger}", {"key": "k", "secret": "s"})
        self.lab.ask("POST", f"/switches/{stranger}/settings", {"system": {"dark_mode": True}})
        self.open(f"#/switch/{stranger}/settings")
        self.press(".queue button", "Withdraw")
        self.find(".empty", "Nothing was queued for this switch yet.")
        self.assertEqual([], self.lab.ask("GET", f"/switches/{stranger}/settings"))
