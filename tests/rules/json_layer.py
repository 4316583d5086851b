"""Only json/ knows the JSON library: the rest of the agent names its nodes and nothing else of it."""
import pathlib
import re
import sys

FOLDERS = ("base", "driver", "sections", "transport", "core")
LIBRARY = re.compile(r'#\s*include\s+[<"]cjson/|\bcJSON_\w+|\bcJSON\.h')
COMMENT = re.compile(r"//.*")


def own_names(root):
    """What the layer itself offers under such a name."""
    return set(re.findall(r"\bcJSON_\w+", COMMENT.sub("", (root / "json/json_document.h").read_text())))


def main(root):
    allowed = own_names(root)
    broken = 0
    seen = 0
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*.[ch]*")):
            seen += 1
            for number, line in enumerate(path.read_text().splitlines(), 1):
                for name in LIBRARY.findall(COMMENT.sub("", line)):
                    if name not in allowed:
                        broken += 1
                        print(f"{path.relative_to(root)}:{number}: {name}")
    print(f"{seen} files, {broken} uses of the JSON library")
    return 1 if broken or not seen else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
