"""Mutants that change nothing that anybody can see, each with its reason: equivalent.toml. They are
known by their function and by the line before and after, so that they survive when lines move."""
import pathlib
import tomllib

LIST = pathlib.Path(__file__).with_name("equivalent.toml")
NEEDED = {"file", "function", "source", "becomes", "reason"}


def read(path=LIST):
    """Key of a mutant -> reason."""
    entries = tomllib.loads(path.read_text()).get("equivalent", [])
    reasons = {}
    for entry in entries:
        lacking = NEEDED - entry.keys()
        if lacking or not entry["reason"].strip():
            raise SystemExit(f"{path.name}: {entry} lacks {', '.join(sorted(lacking)) or 'a reason'}")
        for occurrence in entry.get("occurrences", [1]):
            key = (entry["file"], entry["function"], entry["source"], entry["becomes"], occurrence)
            if key in reasons:
                raise SystemExit(f"{path.name}: twice: {key}")
            reasons[key] = entry["reason"]
    return reasons


def stale(reasons, mutants):
    """The entries for which there is no such mutant any more."""
    known = {mutant.key for mutant in mutants}
    return [key for key in reasons if key not in known]
