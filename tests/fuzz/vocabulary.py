"""The words of the wire for the fuzz targets, taken from the schemas, so that a new member is known
to them at once.

    vocabulary.py SCHEMAS OUTPUT

writes OUTPUT/wire.dict, libFuzzer's dictionary, and OUTPUT/vocabulary.h, the members of each object of
a settings document with values at and beside the ends of their ranges.
"""

import json
import pathlib
import sys

# Texts for the forms that are written out as patterns, by the name of the definition or of the member.
TEXTS = {
    "address": ["02:AA:00:00:00:01", "02-AA-00-00-00-01", "02:AA"],
    "account_text": ["k", "k" * 115, "k" * 116],
    "community_name": ["public", "c" * 33],
    "device_name": ["switch-1", "a" * 255, "-a", "1"],
    "ethertype": ["0800", "FFFF", "05FF", ""],
    "host": ["localhost", "10.0.0.1:8443", "[::1]:80", "h" * 127, "h" * 256, "a'b`c"],
    "id": ["1", "6", "F1", "F2", "trunk1", "trunk8", "0", "99", "4294967297"],
    "ipv4_or_empty": ["10.0.0.1", "255.255.255.0", "256.1.1.1", ""],
    "list_name": ["M", "I", "l" * 32, "l" * 33],
    "list_name_or_empty": ["M", "I", ""],
    "mac_or_empty": ["02:AA:00:00:00:01", "FF-FF-FF-FF-FF-FF", "02:AA", ""],
    "port": ["1", "6", "F1", "F2", "trunk1", "trunk8", "0", "99", "4294967297"],
    "port_list": ["1", "1,3-5", "2-6", "1-96", "97", "5-1", ""],
    "upgrade_url": ["/flash/image0", "http://localhost/image", "http://" + "u" * 300],
    "vlan_list": ["1", "1,10-12", "4094", "1-4094", "4095", "2-1", ""],
}
ANY_TEXT = ["", "a", "t" * 40, "\u00e9", "t" * 300]
ODD_NUMBERS = [-1, 0, 65536, 2147483648, 4294967296, 1.5]


def definition(schemas, home, node, name):
    """The schema behind a reference, the file it is in, and the name to look its texts up by."""
    while "$ref" in node:
        file, _, pointer = node["$ref"].partition("#")
        home = file or home
        found = schemas[home]
        for step in pointer.split("/")[1:]:
            found, name = found[step], step
        node = {**found, **{k: v for k, v in node.items() if k != "$ref"}}
    return home, node, name


def values_of(schemas, home, node, name):
    """Values of a schema that is no object and no array: good ones, and some beside."""
    values = list(node.get("enum", [])) + ([node["const"]] if "const" in node else [])
    for part in node.get("anyOf", []) + node.get("oneOf", []):
        values += values_of(schemas, *definition(schemas, home, part, name))
    for limit, beside in (("minimum", -1), ("maximum", 1)):
        if limit in node:
            values += [node[limit], node[limit] + beside]
    if node.get("type") == "boolean":
        values += [True, False]
    if node.get("type") == "string":
        values += TEXTS.get(name, ANY_TEXT)
    return values


def walk(schemas, home, node, name, path, members):
    home, node, name = definition(schemas, home, node, name)
    if "items" in node:
        walk(schemas, home, node["items"], name, path + "[]", members)
    for part in node.get("oneOf", []):
        walk(schemas, home, part, name, path, members)
    for key, value in node.get("properties", {}).items():
        its_home, member, its_name = definition(schemas, home, value, key)
        if "properties" in member:
            members.append((path, key, "{}", []))
        elif member.get("type") == "array":
            members.append((path, key, "[]", []))
        else:
            values = values_of(schemas, its_home, member, its_name)
            if any(isinstance(v, (int, float)) and not isinstance(v, bool) for v in values):
                values += ODD_NUMBERS
            members.append((path, key, "", values))
        walk(schemas, home, value, key, f"{path}/{key}" if path else key, members)


def members_of(schemas, home):
    members = []
    walk(schemas, home, schemas[home], "", "", members)
    return members


def in_c(text):
    return json.dumps(text)


def table(name, members):
    rows = [
        f"    {{{in_c(path)}, {in_c(key)}, {in_c(opens)}, {in_c(json.dumps(values))}}},\n"
        for path, key, opens, values in members
    ]
    return f"constexpr WireMember {name}[] = {{\n" + "".join(rows) + "};\n"


def header(schemas):
    return (
        "// Made from docs/schema.\n#pragma once\n\n"
        '#include "tests/fuzz/support/wire_member.h"\n\n'
        + table("settings_members", members_of(schemas, "settings.schema.json"))
        + "\n"
        + table("action_members", members_of(schemas, "action.schema.json"))
    )


def entry(word):
    def written(byte):
        return f"\\x{byte:02X}" if byte in b'"\\' or not 32 <= byte < 127 else chr(byte)

    return '"' + "".join(written(byte) for byte in word.encode()) + '"\n'


def dictionary(schemas):
    words = set()
    for home in schemas:
        for _, key, _, values in members_of(schemas, home):
            words.add(f'"{key}":')
            words.update(v for v in values if isinstance(v, str) and 0 < len(v) <= 20)
    return "# Made from docs/schema.\n" + "".join(entry(word) for word in sorted(words))


def main(folder, output):
    files = sorted(pathlib.Path(folder).glob("*.schema.json"))
    schemas = {file.name: json.loads(file.read_text()) for file in files}
    output = pathlib.Path(output)
    output.mkdir(parents=True, exist_ok=True)
    (output / "wire.dict").write_text(dictionary(schemas))
    (output / "vocabulary.h").write_text(header(schemas))


if __name__ == "__main__":
    main(*sys.argv[1:])
