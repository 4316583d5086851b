"""What is wrong with a report, settings or an action by the schemas of docs/schema.

Each function yields a line of text for every fault. Reports come in four kinds:
  whole     nothing failed while it was built
  failing   something did
  part      one section's, without the rest
  starving  memory was short, so that any member may be missing"""
import copy
import functools
import json
import pathlib

import jsonschema

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "docs/schema"
NAMES = ("report", "whole_report", "settings", "action")
TOP_SECTIONS = ("acl", "qos", "vlan", "lldp", "diagnostic")


@functools.cache
def schemas():
    found = {}
    for name in NAMES:
        schema = json.loads((FOLDER / f"{name}.schema.json").read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        found[schema["$id"]] = schema
    return found


def without_requirements(schema):
    """The same schema, asking for no member. Names of members are not taken for keywords."""
    if isinstance(schema, list):
        return [without_requirements(item) for item in schema]
    if not isinstance(schema, dict):
        return schema
    left = {}
    for keyword, value in schema.items():
        if keyword in ("properties", "$defs"):
            left[keyword] = {name: without_requirements(item) for name, item in value.items()}
        elif keyword not in ("required", "dependentRequired", "enum", "const", "prefixItems"):
            left[keyword] = without_requirements(value)
        elif keyword in ("enum", "const"):
            left[keyword] = value
    return left


def without_section_requirements(schema):
    left = copy.deepcopy(schema)
    for holder in (left, left["$defs"]["system"]):
        holder.pop("required")
        holder.pop("dependentRequired", None)
    return left


@functools.cache
def validator(kind):
    store = dict(schemas())
    report = store["report.schema.json"]
    schema = {
        "whole": store["whole_report.schema.json"],
        "failing": report,
        "part": without_section_requirements(report),
        "starving": without_requirements(report),
        "settings": store["settings.schema.json"],
        "action": store["action.schema.json"],
    }[kind]
    store[schema["$id"]] = schema
    resolver = jsonschema.RefResolver(schema["$id"], schema, store)
    return jsonschema.Draft202012Validator(schema, resolver=resolver)


def faults(kind, document):
    for error in validator(kind).iter_errors(document):
        place = "/".join(str(step) for step in error.absolute_path) or "the document"
        yield f"{place}: {error.message[:300]}"


def report_faults(report, kind="failing"):
    return faults(kind, report)


def settings_faults(document):
    return faults("settings", document)


def action_faults(document):
    return faults("action", document)


def as_report(members):
    """A report with these members, which belong at its top or under "system"."""
    top = {name: value for name, value in members.items() if name in TOP_SECTIONS + ("system",)}
    inner = {name: value for name, value in members.items() if name not in top}
    return {**top, "system": {**top.get("system", {}), **inner}} if inner else top
