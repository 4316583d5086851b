"""Who may include whom, checked on every #include of the agent, the judge, the simulated switch and
the lab."""
import pathlib
import re
import sys

# A folder, and the folders whose headers it may include besides its own. The folders of a section
# that is a family of files count as part of sections.
MAY_INCLUDE = {
    "platform": (),
    "base": ("platform",),
    "json": ("base", "platform"),
    "driver": ("base", "platform"),
    "sections": ("driver", "json", "base", "platform"),
    "transport": ("json", "base", "platform"),
    "core": ("transport", "sections", "driver", "json", "base", "platform"),
    "doctor": ("core", "transport", "json", "base", "platform"),
    "sim/instruments": ("platform",),
    "sim/chip": ("sim/instruments", "driver", "platform"),
    "sim/library": ("sim/chip", "sim/instruments", "driver", "platform"),
    "sim/edges": ("sim/library", "sim/chip", "sim/instruments", "driver", "platform"),
    "judge": ("driver", "platform"),
    "lab": (),
}
# Made when the build is configured, and anybody's.
GENERATED = {"version/version.h"}
# What every section may use, and is no section itself.
SHARED_BY_SECTIONS = {"section"}
# The cases in which one section needs another.
BETWEEN_SECTIONS = {("port", "acl")}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def section_of(path):
    """The section that a file belongs to: its folder's, or else the first word of its name."""
    parts = pathlib.PurePath(path).with_suffix("").parts
    return parts[1] if len(parts) > 2 else parts[-1].split("_")[0]


def folder_of(header):
    """The folder of MAY_INCLUDE in which a header lies."""
    return next((folder for folder in MAY_INCLUDE if header.startswith(folder + "/")), None)


def broken_rule(folder, source, header):
    target = folder_of(header)
    if header in GENERATED:
        return None
    if target is None:
        return "is not named by its folder"
    if target != folder and target not in MAY_INCLUDE[folder]:
        return f"{folder} may not include {target}"
    if folder == target == "sections" and section_of(header) not in SHARED_BY_SECTIONS:
        pair = section_of(source), section_of(header)
        if pair[0] != pair[1] and pair not in BETWEEN_SECTIONS:
            return "is another section"
    return None


def main(root):
    broken = 0
    seen = 0
    for folder in MAY_INCLUDE:
        for path in sorted((root / folder).rglob("*.[ch]*")):
            source = path.relative_to(root).as_posix()
            for number, line in enumerate(path.read_text().splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                seen += 1
                reason = broken_rule(folder, source, match.group(1))
                if reason:
                    broken += 1
                    print(f"{source}:{number}: \"{match.group(1)}\" {reason}")
    print(f"{seen} includes, {broken} against the rules")
    return 1 if broken or not seen else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
