"""The scores of the folders, and their table in docs/testing.md."""
import collections
import json

import build

KEPT = build.SCRATCH / "figures.json"
DOCUMENT = build.ROOT / "docs" / "testing.md"
BEGIN = "<!-- mutants: written by ./check --mutants --figures -->\n"
END = "<!-- end of mutants -->\n"
LIVES = ("survived", "unreached")


def count(mutants, verdict_of):
    """Folder -> counts, of the last verdict on each mutant. What the language does not allow is no
    mutant."""
    folders = {folder: collections.Counter() for folder in build.SUITES}
    for mutant in mutants:
        verdict = verdict_of(mutant)
        if verdict == "no mutant":
            continue
        counts = folders[mutant.file.split("/")[0]]
        counts["all"] += 1
        counts["tried"] += verdict is not None
        counts["killed"] += verdict == "killed"
        counts["equivalent"] += verdict == "equivalent"
        counts["lived"] += verdict in LIVES
    return folders


def keep(folders):
    KEPT.write_text(json.dumps(folders))


def percent(counts):
    judged = counts["killed"] + counts["lived"]
    return f"{100 * counts['killed'] / judged:.1f} %" if judged else "-"


def table(folders):
    lines = ["| folder | mutants | tried | killed | equivalent | lived | score |",
             "|---|---:|---:|---:|---:|---:|---:|"]
    for folder, counts in folders.items():
        if counts["tried"]:
            lines.append("| " + " | ".join([folder] + [
                str(counts[column])
                for column in ("all", "tried", "killed", "equivalent", "lived")] +
                [percent(counts)]) + " |")
    return "\n".join(lines) + "\n"


def write():
    if not KEPT.exists():
        raise SystemExit("No mutant has been tried yet.")
    folders = {folder: collections.Counter(counts)
               for folder, counts in json.loads(KEPT.read_text()).items()}
    text = DOCUMENT.read_text()
    before, rest = text.split(BEGIN)
    after = rest.split(END)[1]
    DOCUMENT.write_text(f"{before}{BEGIN}\n{table(folders)}\n{END}{after}")
    return 0
