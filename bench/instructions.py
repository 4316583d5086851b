"""Instructions of one report and of one settings document, under callgrind: the agent's own against
those of the platform library that it calls.

    bench/instructions.py BUILD

What is the platform's is what runs below a call of one of its functions from the agent."""
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
RUNS = [
    ("report, 28 ports, 4 addresses", ["report", "28", "4"]),
    ("report, 28 ports, 256 addresses", ["report", "28", "256"]),
    ("report, 96 ports, 16,384 addresses", ["report", "96", "16384"]),
    ("settings of every section", ["apply", str(ROOT / "bench/settings.json")]),
]
DECLARATION = re.compile(r"\b((?:sal|sys|fds|cmd|sn_sys|user)_\w+)\s*[\[(]")
NAMED = re.compile(r"^c?fn=\((\d+)\)(?: (.*))?$")


def platform_functions():
    """The names that the platform's headers declare."""
    names = set()
    for header in (ROOT / "platform").glob("*.h"):
        names |= set(DECLARATION.findall(re.sub(r"//.*", "", header.read_text())))
    return names


OWN_EDGES = {f"__wrap_{call}" for call in ("malloc", "calloc", "realloc", "strdup")}


def is_simulated(name):
    return "sim::" in name or name.startswith("__wrap_") and name not in OWN_EDGES


class Profile:
    """Inclusive costs by call, from callgrind's own file."""

    def __init__(self, path):
        self.names = {}
        self.total = 0
        self.calls = [] # caller, callee, inclusive cost
        self._read(path.read_text().splitlines())

    def _name(self, line):
        number, name = NAMED.match(line).groups()
        if name:
            self.names[number] = name.split("'")[0]
        return self.names[number]

    def _read(self, lines):
        function = called = None
        after_call = False
        for line in lines:
            if line.startswith("fn="):
                function = self._name(line)
            elif line.startswith("cfn="):
                called = self._name(line)
            elif line.startswith("calls="):
                after_call = True
            elif after_call:
                self.calls.append((function, called, int(line.split()[-1])))
                after_call = False
            elif line.startswith(("summary:", "totals:")):
                self.total = int(line.split()[1])


def platform_cost(profile, platform):
    """Below calls into the platform by who is none of it; its counters are reached by pointer."""
    def is_platform(name):
        return name in platform or is_simulated(name)
    return sum(cost for caller, callee, cost in profile.calls
               if is_platform(callee) and not is_platform(caller))


def measure(program, arguments, folder):
    out = folder / "profile"
    subprocess.run(
        ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", "--collect-atstart=no",
         "--toggle-collect=counted", "--compress-strings=yes", str(program), *arguments],
        check=True, capture_output=True)
    return Profile(out)


def main(build):
    platform = platform_functions()
    with tempfile.TemporaryDirectory(prefix="vx_bench_") as folder:
        print(f"{'instructions of one':36} {'all':>12} {'platform':>12} {'agent':>12} {'agent %':>8}")
        for name, arguments in RUNS:
            profile = measure(build / "bench/once", arguments, pathlib.Path(folder))
            total = profile.total
            below = platform_cost(profile, platform)
            own = total - below
            print(f"{name:36} {total:12,} {below:12,} {own:12,} {100 * own / total:8.1f}")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve())
