"""What the judge has changed is put back, however it ends."""
import json
import os
import signal
import subprocess
import time

from judge_case import BUILD, JudgeCase

PROGRAM = BUILD / "tests/judge/platform_judge_habits"


class Interruption(JudgeCase):
    def saved(self):
        """The delay in the configuration that the switch has saved; 2 is the one it comes with."""
        config = json.loads((self.folder / "board/etc/startup-config.json").read_text())
        return config["config"]["lldp"]["reinit_delay"]

    def interrupt(self, how, whom):
        """Interrupts a judgement in the middle of changing the delay; its exit status."""
        run = subprocess.Popen(
            self.command(PROGRAM, "--change", "--family", "lldp"), cwd=self.folder,
            env={**os.environ, "PLATFORM_HABIT": "a slow setter"}, start_new_session=True,
            stdout=subprocess.DEVNULL)
        journal = self.folder / "platform_judge.journal"
        until = time.monotonic() + 60
        while not (journal.exists() and "reinit" in journal.read_text()):
            self.assertLess(time.monotonic(), until, "nothing was changed")
            time.sleep(0.02)
        time.sleep(0.3)
        whom(run.pid, how)
        return run.wait(60)

    def test_a_terminal_s_interrupt_ends_it_and_everything_is_put_back(self):
        self.assertEqual(3, self.interrupt(signal.SIGINT, os.killpg))
        self.assertEqual(2, self.saved())
        self.assertFalse((self.folder / "platform_judge.journal").exists())

    def test_a_request_to_end_ends_it_and_everything_is_put_back(self):
        self.assertEqual(3, self.interrupt(signal.SIGTERM, os.kill))
        self.assertEqual(2, self.saved())
        self.assertFalse((self.folder / "platform_judge.journal").exists())

    def test_after_a_kill_the_next_start_tells_and_puts_back_when_asked(self):
        self.interrupt(signal.SIGKILL, os.killpg)
        report = self.judge(PROGRAM, "--family", "led", status=0)
        self.assertIn("an earlier run was interrupted", report["remarks"][0])
        self.assertNotEqual(2, self.saved())
        report = self.judge(PROGRAM, "--restore", status=0, PLATFORM_HABIT="a slow setter")
        self.assertIn("put back: sal_lldp_reinit_delay_set = 0", report["remarks"])
        self.assertEqual(2, self.saved())
        self.assertFalse((self.folder / "platform_judge.journal").exists())

    def test_after_a_crash_of_the_library_everything_is_put_back_and_the_judge_goes_on(self):
        report = self.judge(PROGRAM, "--change", "--family", "lldp", status=1,
                            PLATFORM_HABIT="a crash in a setter")
        self.assert_convicted(report, "crashed", "sal_lldp_reinit_delay_set(7)")
        self.assertIn("put back: sal_lldp_reinit_delay_set = 0", report["remarks"])
        self.assertFalse((self.folder / "platform_judge.journal").exists())
        self.assertTrue(report["calls"]["sal_lldp_tx_delay_set"])
