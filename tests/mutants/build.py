"""The mutants' build: a copy of the project, with every mutant that can be in the agent's sources
behind its switch."""
import hashlib
import json
import os
import pathlib
import pickle
import re
import shlex
import shutil
import subprocess
import threading

import operators
import together

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCRATCH = ROOT / "build" / "mutants"
TREE = SCRATCH / "tree"
BUILD = SCRATCH / "build"
SWITCH = BUILD / "switch.o"
# The folders of the agent, and the test programs that reach each, its own first.
SUITES = {
    "base": ("base_tests", "section_tests", "transport_tests", "core_tests"),
    "json": ("json_tests", "section_tests", "transport_tests", "core_tests"),
    "driver": ("driver_tests",),
    "sections": ("section_tests", "core_tests"),
    "transport": ("transport_tests", "core_tests"),
    "core": ("core_tests", "dispatch_table_tests", "section_tests"),
}
FOLDER_OF = {
    "base_tests": "tests/base", "json_tests": "tests/json", "driver_tests": "tests/driver",
    "transport_tests": "tests/transport", "section_tests": "tests/sections",
    "dispatch_table_tests": "tests/core/dispatch_table", "core_tests": "tests/core",
    "sim_tests": "tests/sim"}
COMPILER = ("clang-14", "clang++-14")


def project_files():
    listed = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, check=True,
        capture_output=True, text=True).stdout
    return [name for name in listed.split("\0") if name and (ROOT / name).is_file()]


def agent_sources():
    return [name for name in project_files()
            if name.split("/")[0] in SUITES and name.endswith((".cpp", ".h")) and
            name != "core/main.cpp"]


def write_if_changed(path, content):
    if path.exists() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def copy_project(instrumented):
    wanted = project_files()
    for name in wanted:
        content = instrumented.get(name)
        if content is None:
            content = (ROOT / name).read_bytes()
            write_if_changed(TREE / name, content)
            if os.access(ROOT / name, os.X_OK):
                (TREE / name).chmod(0o755)
        else:
            write_if_changed(TREE / name, content.encode("latin-1"))
    kept = set(wanted)
    for path in TREE.rglob("*"):
        if path.is_file() and str(path.relative_to(TREE)) not in kept:
            path.unlink()


def run(command, **options):
    return subprocess.run(command, check=True, **options)


def make_switch():
    """What is linked into each test program; a newer one is linked anew."""
    source = ROOT / "tests/mutants/switch.cpp"
    if SWITCH.exists() and SWITCH.stat().st_mtime > source.stat().st_mtime:
        return
    BUILD.mkdir(parents=True, exist_ok=True)
    run([COMPILER[1], "-std=c++20", "-O1", "-c", str(source), "-o", str(SWITCH)])
    for program, folder in FOLDER_OF.items():
        (BUILD / folder / program).unlink(missing_ok=True)


def configure():
    hook = BUILD / "hook.cmake"
    BUILD.mkdir(parents=True, exist_ok=True)
    write_if_changed(hook, f"add_link_options({SWITCH})\n".encode())
    run(["cmake", "-S", str(TREE), "-B", str(BUILD), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
         f"-DCMAKE_C_COMPILER={COMPILER[0]}", f"-DCMAKE_CXX_COMPILER={COMPILER[1]}",
         "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DCMAKE_C_FLAGS_DEBUG=-O0",
         "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld", f"-DCMAKE_PROJECT_INCLUDE={hook}"],
        stdout=subprocess.DEVNULL)


def compile_commands():
    listed = json.loads((BUILD / "compile_commands.json").read_text())
    return {str(pathlib.Path(item["file"]).relative_to(TREE)): shlex.split(item["command"])
            for item in listed if item["file"].startswith(str(TREE) + "/")}


def parse_arguments(command):
    """What of a compile command says how the source reads."""
    kept = []
    words = iter(command)
    for word in words:
        if word in ("-isystem", "-include"):
            kept += [word, next(words)]
        elif word.startswith(("-I", "-D", "-std=", "-f")):
            kept.append(word)
    return kept


def arguments_for(name, commands):
    if name in commands:
        return parse_arguments(commands[name])
    folder = name.split("/")[0]
    sibling = next(other for other in commands if other.startswith(folder + "/"))
    return ["-x", "c++"] + parse_arguments(commands[sibling])


def digest(names):
    kept = hashlib.sha256()
    for name in sorted(names):
        kept.update(name.encode() + b"\0" + (ROOT / name).read_bytes())
    return kept.hexdigest()


def with_headers(name):
    """A source and all of the project that it includes."""
    seen = set()
    waiting = [name]
    while waiting:
        name = waiting.pop()
        if name not in seen and (ROOT / name).exists():
            seen.add(name)
            waiting += re.findall(r'^#include "([^"]+)"', (ROOT / name).read_text(), re.M)
    return seen


def find_in(name, commands):
    text = (ROOT / name).read_text("latin-1")
    path = str(TREE / name)
    arguments = arguments_for(name, commands)
    findings = operators.find(name, path, text, arguments)
    if not any(mutant.can_be_built for mutant in findings.mutants):
        return findings, text
    switch = ROOT / "tests/mutants/switch.h"
    return findings, together.put_together(name, path, text, findings, arguments, switch)


class Kept:
    """What was found in the sources, from one run to the next: as long as neither a source nor its
    headers nor the operators change."""

    def __init__(self):
        self.tools = digest(
            f"tests/mutants/{name}" for name in ("operators.py", "together.py", "switch.h"))
        self.folder = SCRATCH / "found"
        self.folder.mkdir(parents=True, exist_ok=True)
        self.digests = {name: digest(with_headers(name)) for name in agent_sources()}

    def path(self, name):
        return self.folder / (self.tools[:16] + self.digests[name][:16])

    def get(self):
        """Findings and text with the switches, of each source of which they are known."""
        return {name: pickle.loads(self.path(name).read_bytes())
                for name in self.digests if self.path(name).exists()}

    def find_the_rest(self, known):
        commands = compile_commands()
        for name in self.digests:
            if name not in known:
                known[name] = find_in(name, commands)
                self.path(name).write_bytes(pickle.dumps(known[name]))


def texts_of(known):
    return {name: text for name, (_, text) in known.items()}


def prepare():
    """Puts the sources with all mutants into the copy. Returns the findings by source."""
    make_switch()
    if not (BUILD / "build.ninja").exists():
        copy_project({})
        configure()
    kept = Kept()
    known = kept.get()
    copy_project(texts_of(known))  # so that the rest is read beside headers of today
    kept.find_the_rest(known)
    copy_project(texts_of(known))
    return {name: findings for name, (findings, _) in known.items()}


def make(programs, jobs):
    done = subprocess.run(["ninja", "-C", str(BUILD), "-j", str(jobs), *programs],
                          capture_output=True, text=True)
    if done.returncode:
        raise SystemExit(done.stdout[-5000:])


# --- A mutant that is compiled alone.

class Alone:
    """Compiles and links single mutants."""

    def __init__(self):
        self.commands = compile_commands()
        self.links = {}
        self.lock = threading.Lock()

    def link_command(self, program):
        with self.lock:
            if program not in self.links:
                listed = run(["ninja", "-C", str(BUILD), "-t", "commands", program],
                             capture_output=True, text=True).stdout.strip().split("\n")
                self.links[program] = listed[-1]
            return self.links[program]

    def compile(self, mutant, folder):
        """The object file, or None where the language does not allow the mutant."""
        text = (ROOT / mutant.file).read_text("latin-1")
        source = folder / pathlib.Path(mutant.file).name
        source.write_bytes(operators.changed(text, mutant.changes).encode("latin-1"))
        command = self.commands[mutant.file]
        relative = command[command.index("-o") + 1]
        target = folder / pathlib.Path(relative).name
        words = [word for word in command if word != "ccache"]
        words[words.index("-o") + 1] = str(target)
        words[words.index("-c") + 1] = str(source)
        words += ["-w", "-Wno-c++11-narrowing"]
        done = subprocess.run(words, cwd=BUILD, capture_output=True)
        return target if done.returncode == 0 else None

    def link(self, program, mutant, target, folder):
        layer = mutant.file.split("/")[0]
        archive = BUILD / layer / f"libvx_{layer}.a"
        own = folder / archive.name
        shutil.copy(archive, own)
        run(["ar", "r", str(own), str(target)], stderr=subprocess.DEVNULL)
        linked = folder / program
        command = self.link_command(program)
        command = re.sub(rf"(\S*/)?{layer}/libvx_{layer}\.a", str(own), command)
        command = re.sub(r"-o \S+", f"-o {linked}", command, count=1)
        done = subprocess.run(command, shell=True, cwd=BUILD, capture_output=True)
        return linked if done.returncode == 0 else None
