"""The script that starts the agent on a switch, with a stand-in for the agent."""
import os
import pathlib
import re
import signal
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VX_SOURCE"])
TEMPLATE = SOURCE / "packaging/switch/vx_cloud.init.in"

# Like the agent, it writes its process id and then lives until it is killed; HOW it takes that.
AGENT = """
#include <signal.h>
#include <stdio.h>
#include <unistd.h>
void go_slowly(int signal) { (void)signal; sleep(1); _exit(0); }
int main(void) {
    FILE* file = fopen("PID_FILE", "w");
    signal(SIGTERM, HOW);
    fprintf(file, "%d", getpid());
    fclose(file);
    for (;;) pause();
}
"""


class Service(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vx_service_")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        self.pid_file = self.folder / "vx_cloud.pid"
        self.agent = self.folder / "vx_cloud"
        self.make_agent()
        self.script = self.folder / "init"
        self.write_script()
        self.addCleanup(self.end_agent)

    def make_agent(self, how="SIG_DFL"):
        text = AGENT.replace("PID_FILE", str(self.pid_file)).replace("HOW", how)
        subprocess.run(["cc", "-x", "c", "-", "-o", self.agent], input=text, text=True, check=True)

    def write_script(self, **values):
        """As it is installed, but for where the agent and its pid file lie."""
        text = TEMPLATE.read_text()
        text = text.replace("@CMAKE_INSTALL_FULL_SBINDIR@", str(self.folder))
        text = text.replace("@VX_PLATFORM_SERVICES@", "")
        text = re.sub(r"(?m)^pid_file=\S+", f"pid_file={self.pid_file}", text)
        for name, value in values.items():
            text = re.sub(rf"(?m)^{name}=\S+", f"{name}={value}", text)
        self.script.write_text(text)

    def call(self, *arguments):
        """The status of the script, and what it says."""
        run = subprocess.run(["sh", self.script, *arguments], stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True, timeout=60)
        return run.returncode, run.stdout

    def pid(self):
        return int(self.pid_file.read_text())

    def alive(self, pid):
        """Dead is also who is only waited for."""
        try:
            state = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0]
        except FileNotFoundError:
            return False
        return state != "Z"

    def end_agent(self):
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if os.readlink(process / "exe").startswith(str(self.folder)):
                    os.kill(int(process.name), signal.SIGKILL)
            except OSError:
                pass

    def test_it_starts_tells_and_stops_the_agent(self):
        self.assertEqual((3, "vx_cloud does not run\n"), self.call("status"))
        status, said = self.call("start")
        pid = self.pid()
        self.assertEqual((0, f"vx_cloud started, process {pid}\n"), (status, said))
        self.assertTrue(self.alive(pid))
        self.assertEqual((0, f"vx_cloud runs, process {pid}\n"), self.call("status"))
        self.assertEqual((0, "vx_cloud stopped\n"), self.call("stop"))
        self.assertFalse(self.alive(pid), "stop returned while the agent ran")
        self.assertFalse(self.pid_file.exists())

    def test_a_start_while_it_runs_and_a_stop_while_it_does_not_are_well(self):
        self.call("start")
        pid = self.pid()
        self.assertEqual((0, f"vx_cloud runs already, process {pid}\n"), self.call("start"))
        self.assertEqual(pid, self.pid())
        self.call("stop")
        self.assertEqual((0, "vx_cloud does not run\n"), self.call("stop"))

    def test_a_restart_is_another_process(self):
        self.call("start")
        before = self.pid()
        self.assertEqual(0, self.call("restart")[0])
        self.assertFalse(self.alive(before))
        self.assertTrue(self.alive(self.pid()))
        self.call("stop")
        self.assertEqual(0, self.call("restart")[0])

    def test_a_pid_file_that_was_left_behind_is_no_agent(self):
        ended = subprocess.Popen(["true"])
        ended.wait()
        for left in (str(ended.pid), "", "none", "0", f"{os.getpid()} 1"):
            self.pid_file.write_text(left)
            self.assertEqual(1, self.call("status")[0], left)
            self.assertEqual(0, self.call("start")[0], left)
            self.assertTrue(self.alive(self.pid()))
            self.call("stop")

    def test_a_process_that_took_over_the_number_is_left_alone(self):
        other = subprocess.Popen(["sleep", "60"])
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        self.pid_file.write_text(str(other.pid))
        self.assertEqual(1, self.call("status")[0])
        self.assertEqual(0, self.call("stop")[0])
        self.assertIsNone(other.poll(), "somebody else's process was ended")

    def test_an_agent_whose_file_was_replaced_is_still_the_agent(self):
        self.call("start")
        pid = self.pid()
        replacement = self.folder / "new"
        replacement.write_bytes(self.agent.read_bytes())
        replacement.chmod(0o755)
        replacement.rename(self.agent)
        self.assertEqual(0, self.call("status")[0])
        self.assertEqual(0, self.call("restart")[0])
        self.assertFalse(self.alive(pid))

    def test_a_stop_waits_for_an_agent_that_takes_its_time(self):
        self.make_agent("go_slowly")
        self.call("start")
        pid = self.pid()
        self.assertEqual((0, "vx_cloud stopped\n"), self.call("stop"))
        self.assertFalse(self.alive(pid))

    def test_an_agent_that_does_not_go_is_killed(self):
        self.make_agent("SIG_IGN")
        self.write_script(stop_seconds=1)
        self.call("start")
        pid = self.pid()
        self.assertEqual(0, self.call("stop")[0])
        self.assertFalse(self.alive(pid))

    def test_an_agent_that_is_not_there_or_ends_at_once_is_told(self):
        self.write_script(start_seconds=1)
        self.agent.write_text("#!/bin/sh\nexit 1\n")
        self.assertEqual((1, "vx_cloud did not start\n"), self.call("start"))
        self.agent.unlink()
        self.assertEqual((5, f"{self.agent} is not there\n"), self.call("start"))

    def test_what_it_does_not_know_it_refuses(self):
        for wrong in ((), ("reload",)):
            self.assertEqual(2, self.call(*wrong)[0])

    def test_the_agent_holds_neither_the_session_nor_the_folder_of_its_starter(self):
        self.call("start")
        self.assertEqual(self.pid(), os.getsid(self.pid()))
        process = pathlib.Path(f"/proc/{self.pid()}")
        self.assertEqual("/", os.readlink(process / "cwd"))
        self.assertEqual(["/dev/null"] * 3, [os.readlink(process / f"fd/{n}") for n in range(3)])

    def test_the_pid_file_is_the_one_that_the_agent_writes(self):
        named = re.search(r"(?m)^pid_file=(\S+)", TEMPLATE.read_text()).group(1)
        self.assertIn(f'fopen("{named}", "w")', (SOURCE / "core/start_up.cpp").read_text())
