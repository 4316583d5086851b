"""Changes the agent's sources one small thing at a time and asks whether a test notices.

usage: ./check --mutants [PATH...] [--sample N --seed S] [--jobs N] [--limit S] [--again] [--list] [--figures]
"""
import argparse
import collections
import concurrent.futures
import json
import os
import random
import sys
import time

import build
import equivalents
import figures
import trial

RESULTS = build.SCRATCH / "results.json"


def read_arguments():
    parser = argparse.ArgumentParser(prog="./check --mutants", description=__doc__.split("\n")[0])
    parser.add_argument("paths", nargs="*", metavar="PATH", help="folders or sources; all")
    parser.add_argument("--sample", type=int, metavar="N", help="N mutants a source, by chance")
    parser.add_argument("--seed", type=int, default=1, metavar="S", help="of the chance; 1")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N")
    parser.add_argument("--limit", type=float, default=5, metavar="S",
                        help="seconds of tests that a mutant has to live through; 5")
    parser.add_argument("--operator", help="mutants of this operator only")
    parser.add_argument("--again", action="store_true",
                        help="those alone that no test noticed the last time")
    parser.add_argument("--list", action="store_true", help="print the mutants and run nothing")
    parser.add_argument("--figures", action="store_true",
                        help="write the last scores into docs/testing.md and run nothing")
    return parser.parse_args()


def is_wanted(name, paths):
    return not paths or any(name == path.rstrip("/") or name.startswith(path.rstrip("/") + "/")
                            for path in paths)


def choose(every, arguments, results):
    wanted = collections.defaultdict(list)
    for mutant in every:
        lived = results.get(as_text(mutant.key), [None])[0] in figures.LIVES
        if (is_wanted(mutant.file, arguments.paths) and (lived or not arguments.again) and
                arguments.operator in (None, mutant.operator)):
            wanted[mutant.file].append(mutant)
    chosen = []
    for name, mutants in sorted(wanted.items()):
        if arguments.sample and len(mutants) > arguments.sample:
            mutants = random.Random(f"{arguments.seed} {name}").sample(mutants, arguments.sample)
        chosen += sorted(mutants, key=lambda mutant: mutant.number)
    return chosen


def as_text(key):
    return json.dumps(key)


def read_results():
    return json.loads(RESULTS.read_text()) if RESULTS.exists() else {}


def show(mutant, verdict):
    print(f"{mutant.file}:{mutant.line} {mutant.function}: {mutant.operator}, {verdict}"
          + (f" (occurrence {mutant.occurrence})" if mutant.occurrence > 1 else ""))
    print(f"- {mutant.source}\n+ {mutant.becomes}\n", flush=True)


def run_all(chosen, found, arguments, results):
    """The verdict of each mutant. Those that live are shown as they are found."""
    folders = {mutant.file.split("/")[0] for mutant in chosen}
    programs = list(dict.fromkeys(
        program for folder in folders for program in build.SUITES[folder]))
    build.make(programs, arguments.jobs)
    trials = trial.Trials(found, programs, arguments.limit)
    reasons = equivalents.read()
    verdicts = {}
    started = time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        waiting = {pool.submit(trials.judge, mutant): mutant for mutant in chosen}
        for count, done in enumerate(concurrent.futures.as_completed(waiting), 1):
            mutant = waiting[done]
            verdict, by = done.result()
            if verdict in figures.LIVES and mutant.key in reasons:
                verdict = "equivalent"
            verdicts[mutant.key] = verdict
            results[as_text(mutant.key)] = [verdict, by]
            if verdict in figures.LIVES:
                show(mutant, verdict)
            if count % 50 == 0:
                write_results(results)
                print(f"... {count} of {len(chosen)}, {time.monotonic() - started:.0f} s",
                      file=sys.stderr, flush=True)
    return verdicts


def write_results(results):
    unfinished = RESULTS.with_suffix(".new")
    unfinished.write_text(json.dumps(results, indent=0))
    unfinished.rename(RESULTS)


def disproved(verdicts):
    """Entries of equivalent.toml that a test tells from the original."""
    return [key for key in equivalents.read() if verdicts.get(key) == "killed"]


def main():
    arguments = read_arguments()
    results = read_results()
    if arguments.figures:
        return figures.write()
    found = build.prepare()
    every = [mutant for findings in found.values() for mutant in findings.mutants
             if mutant.can_be_built]
    chosen = choose(every, arguments, results)
    if arguments.list:
        for mutant in chosen:
            show(mutant, "alone" if mutant.alone else "with the others")
        return 0
    verdicts = run_all(chosen, found, arguments, results)
    known = {as_text(mutant.key) for mutant in every}
    write_results({key: value for key, value in results.items() if key in known})
    folders = figures.count(every, lambda mutant: results.get(as_text(mutant.key), [None])[0])
    figures.keep(folders)
    print(figures.table(folders))
    errors = [f"equivalent.toml: no such mutant any more: {key}"
              for key in equivalents.stale(equivalents.read(), every)]
    errors += [f"equivalent.toml: a test tells it from the original: {key}"
               for key in disproved(verdicts)]
    print("".join(f"{error}\n" for error in errors), end="", file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
