"""Where things lie in the source tree, and which version this is. `cmake --install` puts another file
in the place of this one, which says the same of what it installed."""
import pathlib
import re

SOURCE = pathlib.Path(__file__).resolve().parent.parent
BUILD = SOURCE / "build/release"
STATE = SOURCE / ".vx"
SCHEMAS = SOURCE / "docs/schema"
CONTRACT = SOURCE
VERSION = re.search(r"^project\(vx_cloud VERSION ([\d.]+)",
                    (SOURCE / "CMakeLists.txt").read_text(), re.M).group(1)


def program(name, build):
    """The path of a program as it was built in the folder `build`."""
    return {"lab_cloud": build / "lab", "vx_cloud_sim": build / "sim"}[name] / name
