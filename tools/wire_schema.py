"""What is wrong with a report, settings or an action by the schemas of docs/schema.

Each function yields a line of text for every fault. Reports come in four kinds:
  whole     nothing failed while it was built
  failing   something did
  part      one section's, without the rest
  starving  memory was short, so that any member may be missing"""
import copy
import functools
import json

import jsonschema

import places

NAMES = ("report", "whole_report", "settings", "action")
HOLDERS = ("system", "acl", "qos", "lldp", "diagnostic")


@functools.cache
def schemas():
    found = {}
    for name in NAMES:
        schema = json.loads((places.SCHEMAS / f"{name}.schema.json").read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        found[schema["$id"]] = schema
    return found


# What a schema says of the presence of members, or by it.
PRESENCE = ("required", "dependentRequired", "if", "then", "else", "allOf")


def without_requirements(schema):
    """The same schema, asking for no member and, in lists of a fixed order, for no place."""
    left = {}
    for keyword, value in schema.items():
        if keyword in ("properties", "$defs"):
            left[keyword] = {name: without_requirements(item) for name, item in value.items()}
        elif keyword == "items":
            left[keyword] = without_requirements(value)
        elif keyword == "prefixItems":
            left["items"] = {"$ref": value[0]["$ref"]}
        elif keyword not in PRESENCE:
            left[keyword] = value
    return left


def without_section_requirements(schema):
    left = copy.deepcopy(schema)
    for holder in holders(left):
        holder.pop("required", None)
        holder.pop("dependentRequired", None)
    return left


def holders(report):
    """The schemas of the objects to which the agent adds one thing after the other."""
    return [report, *(report["$defs"][name] for name in HOLDERS)]


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
    """A report with these members, each in the first object that has a place for it."""
    report = {}
    schema = schemas()["report.schema.json"]
    for name, value in members.items():
        holder = next((holder for holder in HOLDERS
                       if name in schema["$defs"][holder]["properties"]), None)
        if name in schema["properties"] or not holder:
            report[name] = value
        else:
            report.setdefault(holder, {})[name] = value
    return report
