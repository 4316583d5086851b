"""A lab cloud, a switch and a bare client of the same transfers, for benches that look at processes."""
import contextlib
import pathlib
import signal
import statistics
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tools"))
from workbench import MAC, Lab, Process, Switch

BARE_MAC = "02:1B:2C:3D:4E:60"


@contextlib.contextmanager
def lab_cloud(build):
    """A lab cloud and the folder in which things are."""
    with tempfile.TemporaryDirectory(prefix="vx_bench_") as name:
        folder = pathlib.Path(name)
        lab = Lab(build / "lab/lab_cloud", folder / "cloud",
                  options=("--account", f"{BARE_MAC},bare-key,bare-secret"))
        try:
            yield lab, folder
        finally:
            lab.stop()


@contextlib.contextmanager
def switch_at(lab, build, folder, speed, trace=None):
    """A switch that has checked in; `trace` names a file for its trace."""
    prepared = Switch(build / "sim/vx_cloud_sim", folder, lab, speed)
    command = [str(prepared.program), "--root", str(prepared.root), "--scenario",
               str(prepared.scenario), "--speed", str(speed)]
    before = lab.last_event()
    process = Process(command + (["--trace", str(trace)] if trace else []), folder / "agent.log")
    try:
        lab.event("checkin", before, 120)
        yield process
    finally:
        process.stop(signal.SIGKILL)


@contextlib.contextmanager
def bare_client(program, *arguments):
    child = subprocess.Popen([str(program), *map(str, arguments)], stdout=subprocess.PIPE, text=True)
    try:
        yield child
    finally:
        child.kill()
        child.wait()
        child.stdout.close()


def listen_url(lab, mac):
    return f"http://localhost:{lab.ports['keeper'][0]}/router/listen/{mac}"


def check_in_url(lab, mac):
    return f"https://localhost:{lab.ports['https'][0]}/cloud-switch/{mac}/checkin"


def child_of(process_id):
    """The agent's process below its supervisor."""
    return int(pathlib.Path(f"/proc/{process_id}/task/{process_id}/children").read_text().split()[0])


def anonymous_kilobytes(process_id):
    """Memory that holds no file: what is a process's own, also where a copy of it is still shared
    with the process that it was copied from."""
    for line in pathlib.Path(f"/proc/{process_id}/smaps_rollup").read_text().splitlines():
        if line.startswith("Anonymous:"):
            return int(line.split()[1])
    raise ValueError("no memory is told")


def spread(values, unit, digits=2):
    return (f"{statistics.median(values):.{digits}f} {unit} "
            f"({min(values):.{digits}f} to {max(values):.{digits}f})")
