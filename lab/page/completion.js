// What the schema offers at the cursor.
import {expected_at} from "./json_text.js";
import {resolved, schema_at} from "./schema.js";

const STUBS = {object: "{|}", array: "[|]", string: "\"|\""};

// `|` marks where the cursor goes.
function names(root, way, present) {
  const schema = schema_at(root, way);
  return Object.entries(schema?.properties ?? {}).filter(([name, part]) => part !== false && !present.includes(name))
    .map(([name, part]) => {
      const own = resolved(root, part);
      return {shown: name, text: `"${name}": ${STUBS[own.type] ?? "|"}`, about: own.description ?? ""};
    });
}

// The meaning of a number, where the description tells it: "0 low, 1 medium" or "0: all; 1: none".
function meaning(value, description) {
  const found = new RegExp(`(?:^|[ ,;])${value}:? ([^,;.]+)`).exec(description ?? "");
  return found ? found[1] : "";
}

function values(root, way, report) {
  const schema = schema_at(root, way);
  if (!schema)
    return [];
  if (way.length === 4 && way[1] === "ports" && way[3] === "id")
    return (report?.system?.ports ?? []).map(({id}) => ({shown: id, text: JSON.stringify(id), about: "port"}));
  if (schema.enum)
    return schema.enum.map((value) => ({shown: String(value), text: JSON.stringify(value), about: meaning(value, schema.description)}));
  if (schema.type === "boolean")
    return ["true", "false"].map((value) => ({shown: value, text: value, about: schema.description ?? ""}));
  if (schema.type === "integer")
    return [schema.minimum, schema.maximum].filter((bound) => bound !== undefined)
      .map((bound, index) => ({shown: String(bound), text: String(bound), about: `${index ? "most" : "least"}${schema.description ? `. ${schema.description}` : ""}`}));
  const stub = STUBS[schema.type];
  return stub ? [{shown: schema.type === "string" ? "\"…\"" : stub.replace("|", "…"), text: stub, about: schema.description ?? ""}] : [];
}

// {from, to, options: [{shown, text, about}]} or null.
export function complete(root, text, cursor, report) {
  const expected = expected_at(text, cursor);
  if (!expected)
    return null;
  const typed = expected.typed.replaceAll("\"", "").toLowerCase();
  const offered = expected.name ? names(root, expected.way, expected.present) : values(root, expected.way, report);
  const options = offered.filter(({shown}) => shown.toLowerCase().startsWith(typed))
    .concat(offered.filter(({shown}) => typed && shown.toLowerCase().indexOf(typed) > 0));
  const rest = /^[\w.+-]*"?/.exec(text.slice(cursor))[0];
  const colon = expected.name ? /^\s*:/.exec(text.slice(cursor + rest.length))?.[0] ?? "" : "";
  const to = cursor + rest.length;
  return options.length ? {from: expected.from, to,
    options: colon ? options.map((option) => ({...option, text: `"${option.shown}"|`})) : options} : null;
}
