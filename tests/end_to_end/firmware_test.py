"""Firmware: an upgrade from the cloud into the other partition, and what can go wrong."""
from make_image import make_image
from end_to_end import EndToEnd


class Firmware(EndToEnd):
    def setUp(self):
        super().setUp()
        self.lab.put_firmware("v2.bix", make_image("2.0.0"))

    def order(self, name, **more):
        """Orders an image into partition 2; the report that acknowledges it."""
        return self.apply({"system": {"firmware": {
            "upgrade_partition": 2, "upgrade_url": self.lab.firmware_url(name), **more}}})

    def running(self, report):
        return report["system"]["summary_info"]["firmware_version"]

    def firmware(self):
        return self.lab.report()["system"]["firmware"]

    def calls(self, names):
        called = [line.split("(")[0] for line in self.switch.trace()]
        return [name for name in called if name in names]

    def no_reboot(self):
        self.assertNotIn("sal_sys_reboot() = 0", self.switch.trace())
        self.assertEqual(self.running(self.lab.report()), "1.0.0")

    def test_an_upgrade_is_booted_and_reported(self):
        self.start()
        self.order("v2.bix", active_partition=2)
        report = self.report_until("the new version", lambda r: self.running(r) == "2.0.0")
        self.assertEqual(report["system"]["firmware"], {
            "active_partition": 2, "version_partition_1": "1.0.0", "version_partition_2": "2.0.0",
            "flags": []})
        self.assertEqual(report["system"]["cloud"]["config_seqno"], 2)
        self.assertEqual(
            self.calls({"sal_fwImage_download", "sal_sys_fwImage_write", "sal_sys_fwImage_backup",
                        "sal_sys_dualImage_sel", "sal_sys_reboot"}),
            ["sal_fwImage_download", "sal_sys_fwImage_write", "sal_sys_fwImage_backup",
             "sal_sys_dualImage_sel", "sal_sys_reboot"])

    def test_a_damaged_image_is_flag_102_once_and_no_reboot(self):
        self.start()
        report = self.order("corrupt/v2.bix")
        self.assertEqual(report["system"]["firmware"]["flags"], [102])
        self.next_checkin()
        self.assertEqual(self.firmware(), {
            "active_partition": 1, "version_partition_1": "1.0.0", "version_partition_2": "0.9.0",
            "flags": []})
        self.assertNotIn("sal_sys_fwImage_write", " ".join(self.switch.trace()))
        self.no_reboot()

    def test_what_is_no_image_is_flag_101(self):
        self.lab.put_firmware("notes.txt", b"These are no firmware but notes.")
        self.start()
        self.assertEqual(self.order("notes.txt")["system"]["firmware"]["flags"], [101])
        self.no_reboot()

    def test_an_image_that_is_not_there_is_not_written(self):
        self.start()
        self.assertEqual(self.order("v3.bix")["system"]["firmware"]["flags"], [])
        self.no_reboot()

    def test_a_partition_that_cannot_be_read_back_is_written_three_times(self):
        self.switch.options = ("--fault", "platform:sal_sys_fwImage_backup#1+=47")
        self.start()
        self.assertEqual(self.order("v2.bix")["system"]["firmware"]["flags"], [102])
        self.assertEqual(self.calls({"sal_fwImage_download", "sal_sys_fwImage_write"}),
                         ["sal_fwImage_download", "sal_sys_fwImage_write"] * 3)
        self.no_reboot()

    def test_the_other_partition_is_started_at_the_next_restart(self):
        self.start()
        report = self.apply({"system": {"firmware": {"active_partition": 2}}})
        self.assertEqual(report["system"]["firmware"]["active_partition"], 2)
        self.no_reboot()
        self.lab.push(action="reboot")
        self.report_until("the other version", lambda r: self.running(r) == "0.9.0")

    def test_a_factory_reset_forgets_the_settings_and_keeps_the_account(self):
        self.start()
        name = lambda report: report["system"]["summary_info"]["device_name"]
        self.apply({"system": {"summary_info": {"device_name": "Cellar"}}})
        self.apply({"system": {"firmware": {"factory_reset": True}}})
        report = self.report_until("the default name", lambda r: name(r) == "Switch")
        self.assertEqual(report["system"]["cloud"]["config_seqno"], 3)
        self.assertEqual(self.switch.startup_config(), {})
