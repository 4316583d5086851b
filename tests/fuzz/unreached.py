#!/usr/bin/env python3
"""Lists the functions of the agent and of the lab that no fuzz target gets to with its seeds and corpus.

    tests/fuzz/unreached.py [--lines] [FOLDER...]      all folders of the agent, and the lab, without

With --lines also the lines within the others. Many of these are nothing but a sanitizer's own ways out,
which stand in the line that they watch. The targets are asked, which ./check has built.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = ROOT / "build/sanitize/tests/fuzz"
FOLDERS = ["base", "json", "transport", "core", "sections", "driver", "lab"]
SYMBOLIZER = shutil.which("llvm-symbolizer-14") or shutil.which("llvm-symbolizer")


def source(path):
    """Relative to the project; None for what is not in it. Objects name their sources as they are seen
    from the build folder, whichever that was: a compiler cache may have them from another."""
    _, _, inner = path.partition("/build/sanitize/../../")
    return inner or None


def addresses_of(program):
    """Each place's address, and whether it was reached."""
    name = program.name.removeprefix("fuzz_")
    corpora = [PROGRAMS / "corpus" / name, ROOT / "tests/fuzz/seeds" / name]
    with tempfile.NamedTemporaryFile("r") as places:
        subprocess.run(
            [program, "-runs=0", "-close_fd_mask=1", *corpora],
            stderr=subprocess.DEVNULL,
            env={**os.environ, "REACHED_PLACES": places.name},
            check=True,
        )
        return [(line[1:].strip(), line[0] == "+") for line in places]


def plain_name(function):
    """Of a function that stands alone the debug information has the whole name, of others the last word."""
    return re.sub(r"<.*>|\(.*\)$", "", function.replace("(anonymous namespace)::", "")).rsplit("::", 1)[-1]


def places_of(program):
    """Each place's source, line and function, and whether it was reached. A place within a function that
    was put into its caller is one of that function."""
    addresses = addresses_of(program)
    ran = subprocess.run(
        [SYMBOLIZER, f"--obj={program}", "--inlines", "--functions=linkage", "--demangle"],
        input="".join(address + "\n" for address, _ in addresses),
        stdout=subprocess.PIPE,
        text=True,
        check=True,
    )
    for (_, reached), frames in zip(addresses, ran.stdout.split("\n\n")):
        function, place = frames.strip().splitlines()[:2]
        path, line = place.rsplit(":", 2)[:2]
        yield source(path), int(line), plain_name(function), reached


def main(arguments):
    with_lines = "--lines" in arguments
    folders = [folder for folder in arguments if folder != "--lines"] or FOLDERS
    functions, lines, reached = {}, set(), set()
    for program in sorted(PROGRAMS.glob("fuzz_*")):
        for file, line, function, was_reached in places_of(program):
            if not file or not line or file.split("/")[0] not in folders:
                continue
            first = functions.get((file, function), line)
            functions[(file, function)] = min(first, line)
            lines.add((file, line, function))
            if was_reached:
                reached |= {(file, function), (file, line, function)}
    missed = {
        (file, line, function)
        for (file, function), line in functions.items()
        if (file, function) not in reached
    }
    if with_lines:
        missed |= lines - reached
    for file, line, function in sorted(missed):
        text = (ROOT / file).read_text().splitlines()[line - 1].strip()
        print(f"{file}:{line}: {text if (file, function) in reached else function}")


if __name__ == "__main__":
    main(sys.argv[1:])
