"""Runs the tests that reach a mutant until one of them fails."""
import dataclasses
import json
import os
import pathlib
import re
import resource
import shutil
import subprocess
import tempfile
import threading

import build

FIRST_RUN = 0.3  # seconds of tests that are tried before all others
MOST_MEMORY = 4 << 30
QUICK_FOLDER = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


@dataclasses.dataclass
class Test:
    program: str
    name: str
    seconds: float
    reached: dict  # source -> numbers

    def size(self, source):
        return len(self.reached.get(source, ()))


class Place:
    """A folder for one run, quick and gone afterwards."""

    def __enter__(self):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="vx-mutant-", dir=QUICK_FOLDER))
        return self.path

    def __exit__(self, *_):
        shutil.rmtree(self.path, ignore_errors=True)


def limits(seconds):
    def set_limits():
        resource.setrlimit(resource.RLIMIT_CPU, (int(seconds), int(seconds) + 1))
        resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    return set_limits


def program_path(program):
    return build.BUILD / build.FOLDER_OF[program] / program


def run_tests(path, names, environment, estimate, folder):
    """None when all pass, or what became of them. What computes too long is stopped by the
    processor's time, what waits too long by the clock on the wall, which a busy machine stretches."""
    words = [str(path), "--gtest_fail_fast", "--gtest_color=no", "--gtest_brief=1"]
    if names:
        words.append("--gtest_filter=" + ":".join(names))
    try:
        done = subprocess.run(
            words, cwd=path.parent if path.is_relative_to(build.BUILD) else folder,
            env=dict(os.environ, TMPDIR=str(folder), **environment), stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120 + 60 * estimate,
            start_new_session=True, preexec_fn=limits(4 + 5 * estimate))
    except subprocess.TimeoutExpired:
        return "takes too long"
    if done.returncode == 0:
        return None
    failed = re.search(rb"\[  FAILED  \] (\S+?),? ", done.stdout)
    if failed:
        return failed[1].decode()
    return "takes too long" if done.returncode == -24 else f"ends with {done.returncode}"


# --- What reaches what.

def record_reached(program, folder):
    listed = folder / f"{program}.reached"
    done = subprocess.run(
        [str(program_path(program)), "--gtest_color=no"], cwd=program_path(program).parent,
        env=dict(os.environ, TMPDIR=str(folder), VX_REACHED=str(listed)),
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != 0:
        text = done.stdout.decode("utf-8", "replace")
        raise SystemExit(f"{program} fails without any mutant:\n{text[-3000:]}")
    return [json.loads(line) for line in listed.read_text().splitlines()]


def reached_by_tests(programs):
    tests = []
    with Place() as folder:
        for program in programs:
            kept = build.BUILD / f"{program}.reached.json"
            if not kept.exists() or kept.stat().st_mtime < program_path(program).stat().st_mtime:
                kept.write_text(json.dumps(record_reached(program, folder)))
            for line in json.loads(kept.read_text()):
                if line["test"]:
                    reached = {source: set(numbers) for source, numbers in line["reached"].items()}
                    tests.append(Test(program, line["test"], line["ms"] / 1000, reached))
    return tests


class Reach:
    def __init__(self, found, programs):
        self.found = found
        self.tests = reached_by_tests(programs)

    def numbers(self, mutant):
        """By which of a source's marks a test is known to reach the mutant: its own, and for what
        is read before the tests run or compiled alone, those of the functions around it."""
        if not mutant.alone and not mutant.table:
            return {mutant.number}
        findings = self.found[mutant.file]
        names = findings.uses.get(mutant.table) if mutant.table else {mutant.function}
        first = len(findings.mutants) + 1
        probes = {number for number, (_, function) in enumerate(findings.probes, first)
                  if not names or function in names}
        return probes or set(range(first, first + len(findings.probes)))

    def tests_of(self, mutant):
        numbers = self.numbers(mutant)
        suites = build.SUITES[mutant.file.split("/")[0]]
        tests = [test for test in self.tests if test.program in suites and
                 not numbers.isdisjoint(test.reached.get(mutant.file, ()))]
        return sorted(tests, key=lambda test: (
            suites.index(test.program), test.size(mutant.file), test.seconds))


# --- One mutant.

class Trials:
    def __init__(self, found, programs, limit):
        self.limit = limit
        self.reach = Reach(found, programs)
        self.alone = build.Alone()
        self.lock = threading.Lock()
        self.killers = {}  # (file, function) -> tests that killed there, the last first

    def judge(self, mutant):
        """("killed", by), ("survived", ""), ("unreached", "") or ("no mutant", "")."""
        with Place() as folder:
            if not mutant.alone:
                environment = {"VX_MUTANT": f"{mutant.file}:{mutant.number}"}
                return self.judge_program(mutant, environment, lambda program: program_path(program),
                                          folder)
            target = self.alone.compile(mutant, folder)
            if not target:
                return "no mutant", ""
            return self.judge_program(
                mutant, {}, lambda program: self.alone.link(program, mutant, target, folder), folder)

    def judge_program(self, mutant, environment, path_of, folder):
        tests = self.reach.tests_of(mutant)
        if not tests:
            return "unreached", ""
        for batch in self.batches(mutant, tests):
            path = path_of(batch[0].program)
            if not path:
                return "killed", "does not link"
            names = [test.name for test in batch]
            estimate = sum(test.seconds for test in batch)
            if killer := run_tests(path, names, environment, estimate, folder):
                self.remember(mutant, killer)
                return "killed", killer
        return "survived", ""

    def within_limit(self, tests):
        """The tests of a mutant's time, the quick ones first to be taken; in their order."""
        left = self.limit
        taken = set()
        for test in sorted(tests, key=lambda test: test.seconds):
            left -= test.seconds
            if left >= 0 or not taken:
                taken.add(id(test))
        return [test for test in tests if id(test) in taken]

    def batches(self, mutant, tests):
        """The likely ones first, then the others program by program."""
        with self.lock:
            known = self.killers.get((mutant.file, mutant.function), [])[:6]
        tests = self.within_limit(tests)
        likely = [test for test in tests if test.name in known]
        rest = [test for test in tests if test.name not in known]
        own = tests[0].program
        likely = [test for test in likely if test.program == own]
        seconds = sum(test.seconds for test in likely)
        while rest and rest[0].program == own and (not likely or seconds < FIRST_RUN):
            likely.append(rest.pop(0))
            seconds += likely[-1].seconds
        yield likely
        for program in dict.fromkeys(test.program for test in rest):
            left = [test for test in tests if test.program == program and test not in likely]
            if left:
                yield left

    def remember(self, mutant, killer):
        with self.lock:
            killers = self.killers.setdefault((mutant.file, mutant.function), [])
            if killer in killers:
                killers.remove(killer)
            killers.insert(0, killer)
