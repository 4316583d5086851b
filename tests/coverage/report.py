#!/usr/bin/env python3
"""Which lines and branches of the agent its suites never take: a table by room, then each branch that
is not taken with the reason why that is so. A branch without a reason, and a reason without such a
branch, is a fault.

    report.py <build folder>      of the preset "coverage", with the suites built
"""
import collections
import json
import os
import pathlib
import subprocess
import sys

SOURCE = pathlib.Path(__file__).resolve().parents[2]
REASONS = SOURCE / "tests/coverage/reasons.txt"
ROOMS = ("base", "json", "driver", "sections", "transport", "core")
SUITES = {"base": "base_tests", "json": "json_tests", "driver": "driver_tests",
          "sections": "section_tests", "transport": "transport_tests", "core": "core_tests",
          "torture": "torture_tests"}

Branch = collections.namedtuple("Branch", "file line column never")


def run_suites(build):
    profiles = build / "profiles"
    profiles.mkdir(exist_ok=True)
    programs = []
    for folder, name in SUITES.items():
        program = build / "tests" / folder / name
        subprocess.run([program, "--gtest_brief=1"], check=True, stdout=subprocess.DEVNULL,
                       env={**os.environ, "LLVM_PROFILE_FILE": str(profiles / f"{folder}.profraw")})
        programs.append(program)
    merged = profiles / "all.profdata"
    subprocess.run(["llvm-profdata-14", "merge", "-o", merged, *profiles.glob("*.profraw")], check=True)
    return programs, merged


def read_coverage(programs, merged):
    """{path within the project: what llvm-cov says of the file}"""
    objects = [word for program in programs[1:] for word in ("-object", program)]
    told = subprocess.run(["llvm-cov-14", "export", "-instr-profile", merged, programs[0], *objects],
                          check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    files = {}
    for file in json.loads(told)["data"][0]["files"]:
        path = pathlib.Path(file["filename"]).resolve()
        if path.is_relative_to(SOURCE) and path.relative_to(SOURCE).parts[0] in ROOMS:
            files[str(path.relative_to(SOURCE))] = file
    return files


def table(files):
    yield f"{'room':<12}{'lines':>8}{'covered':>9}{'':>9}{'branches':>10}{'covered':>9}"
    for room in ROOMS:
        count = collections.Counter()
        for path, file in files.items():
            if path.startswith(room + "/"):
                for kind in ("lines", "branches"):
                    count[kind] += file["summary"][kind]["count"]
                    count[kind, "covered"] += file["summary"][kind]["covered"]
        shares = [100 * count[kind, "covered"] / (count[kind] or 1) for kind in ("lines", "branches")]
        yield (f"{room:<12}{count['lines']:>8}{count['lines', 'covered']:>9}{shares[0]:>8.1f}%"
               f"{count['branches']:>10}{count['branches', 'covered']:>9}{shares[1]:>8.1f}%")


def find_missed(files):
    """Branches that are never taken. A template's or a macro's are one branch for all its uses."""
    for path, file in sorted(files.items()):
        taken = collections.defaultdict(lambda: [0, 0])
        for line, column, _, _, true, false, *_ in file["branches"]:
            taken[line, column][0] += true
            taken[line, column][1] += false
        for (line, column), counts in sorted(taken.items()):
            for count, name in zip(counts, ("true", "false")):
                if count == 0:
                    yield Branch(path, line, column, name)


def read_reasons():
    """{(file, source line, never): reason}; a reason stands above the lines it is for."""
    reasons, reason = {}, ""
    for line in REASONS.read_text().splitlines():
        if line.startswith("#") or not line.strip():
            continue
        if not line.startswith(" "):
            reason = line
            continue
        path, never, text = line.strip().split(None, 2)
        reasons[path, text.strip(), never] = reason
    return reasons


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    files = read_coverage(*run_suites(build))
    print("\n".join(table(files)))
    reasons = read_reasons()
    unused = set(reasons)
    unexplained = []
    for branch in find_missed(files):
        source = (SOURCE / branch.file).read_text().splitlines()[branch.line - 1].strip()
        key = branch.file, source, branch.never
        unused.discard(key)
        if key not in reasons:
            unexplained.append(f"  {branch.file} {branch.never} {source}")
    print(f"\n{len(reasons) - len(unused)} lines with a branch that is never taken have a reason in "
          f"{REASONS.relative_to(SOURCE)}")
    if unexplained:
        print(f"{len(unexplained)} have none:\n" + "\n".join(dict.fromkeys(unexplained)))
    if unused:
        print("reasons without such a branch:\n" + "\n".join(f"  {' '.join(key)}" for key in sorted(unused)))
    return 1 if unexplained or unused else 0


if __name__ == "__main__":
    sys.exit(main())
