"""Who may include whom: the floors of the house, checked on every #include."""
import pathlib
import re
import sys

GROUND = {"core/state.h", "core/errors.h", "core/debug.h", "core/credentials.h"}
FLOORS = {
    "platform": {"platform"},
    "json": {"json", "platform"},
    "driver": {"driver", "platform"},
    "sections": {"sections", "driver", "json", "platform"},
    "transport": {"transport", "sections", "json", "platform"},
    "core": {"core", "transport", "sections", "json", "platform"},
    "sim": {"sim", "platform", "driver"},
    "lab": {"lab"},
}
# The three cases in which one section needs another. A section may be several files; the files of
# one section share the first word of the name; the entries of access lists are part of their section.
BETWEEN_SECTIONS = {("port", "vlan_upkeep"), ("port", "acl_binding"), ("uplink_port", "port_list")}
# What every section may use: not a section itself.
SHARED_BY_SECTIONS = {"port_id", "section", "port_list"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def section_of(stem):
    word = stem.split("_")[0]
    return "acl" if word == "ace" else word


def same_section(source, header):
    return section_of(source) == section_of(header)


def between_sections_ok(source, header):
    if header in SHARED_BY_SECTIONS or same_section(source, header):
        return True
    return any(source.startswith(user) and header == used for user, used in BETWEEN_SECTIONS)


def broken_rule(folder, stem, header):
    if "/" not in header:
        return "is not named by its folder"
    target = header.split("/")[0]
    ground_user = folder in ("json", "sections", "transport", "core")
    if header in GROUND:
        in_ground = folder == "core"
        return None if ground_user or in_ground else "stands on the agent's ground floor"
    if folder == "core" and f"core/{stem}.h" in GROUND and target != "platform":
        return "is above the ground floor"
    if target not in FLOORS[folder]:
        return f"{folder} may not include {target}"
    if folder == target == "sections" and not between_sections_ok(
            stem, pathlib.PurePath(header).stem):
        return "is another section"
    return None


def main(root):
    broken = 0
    seen = 0
    for folder in FLOORS:
        for path in sorted((root / folder).glob("*.[ch]*")):
            for number, line in enumerate(path.read_text().splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                seen += 1
                reason = broken_rule(folder, path.stem, match.group(1))
                if reason:
                    broken += 1
                    print(f"{path}:{number}: \"{match.group(1)}\" {reason}")
    print(f"{seen} includes, {broken} against the rules")
    return 1 if broken or not seen else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
