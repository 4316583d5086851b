// What docs/schema says of a document, for the words that it uses: faults, and what may stand where.

export async function load_schema(name) {
  const answer = await fetch(`/page/${name}.schema.json`);
  return answer.json();
}

// A schema without its reference: what is referred to, with what stands beside the reference.
export function resolved(root, schema) {
  if (typeof schema !== "object" || !schema.$ref)
    return schema;
  const name = schema.$ref.replace("#/$defs/", "");
  const {$ref, ...beside} = schema;
  return {...resolved(root, root.$defs[name]), ...beside};
}

const kind_of = (value) =>
  value === null ? "null" : Array.isArray(value) ? "array" : typeof value === "bigint" ? "number" : typeof value;

const same = (a, b) => JSON.stringify(a) === JSON.stringify(b);

const fits_type = (value, type) => type === "integer"
  ? typeof value === "bigint" || (typeof value === "number" && Number.isInteger(value)) : kind_of(value) === type;

const expected_value = (values) => values.map((value) => JSON.stringify(value)).join(", ");

// A test a word: what is wrong with the value, or nothing. Each looks at values of its kind only.
const WORDS = {
  type: (value, type) => fits_type(value, type) ? null : `must be ${/^[aio]/.test(type) ? "an" : "a"} ${type}`,
  enum: (value, values) => values.some((one) => same(one, value)) ? null : `must be one of ${expected_value(values)}`,
  const: (value, one) => same(one, value) ? null : `must be ${JSON.stringify(one)}`,
  minimum: (value, least) => kind_of(value) !== "number" || value >= least ? null : `must be at least ${least}`,
  maximum: (value, most) => kind_of(value) !== "number" || value <= most ? null : `must be at most ${most}`,
  multipleOf: (value, step) => kind_of(value) !== "number" || Number(value) % step === 0 ? null : `must be a multiple of ${step}`,
  minLength: (value, least) => kind_of(value) !== "string" || [...value].length >= least ? null : least === 1 ? "must not be empty" : `must have at least ${least} characters`,
  maxLength: (value, most) => kind_of(value) !== "string" || [...value].length <= most ? null : `must have at most ${most} characters`,
  pattern: (value, pattern) => kind_of(value) !== "string" || new RegExp(pattern, "u").test(value) ? null : "is not of the right form",
  maxItems: (value, most) => !Array.isArray(value) || value.length <= most ? null : `must have at most ${most} elements`,
};

function* object_faults(root, schema, value, way) {
  for (const name of schema.required ?? [])
    if (!(name in value))
      yield {way, text: `needs "${name}"`};
  for (const [name, others] of Object.entries(schema.dependentRequired ?? {}))
    for (const other of others)
      if (name in value && !(other in value))
        yield {way, text: `needs "${other}" beside "${name}"`};
  for (const [name, member] of Object.entries(value)) {
    const known = Object.hasOwn(schema.properties ?? {}, name);
    if (known)
      yield* faults_of(root, schema.properties[name], member, [...way, name]);
    else if (schema.additionalProperties === false)
      yield {way: [...way, name], text: "is not known here"};
  }
}

// Everything that is wrong with a value: [{way, text}].
export function* faults_of(root, schema, value, way = []) {
  if (schema === false)
    yield {way, text: "is not allowed here"};
  if (typeof schema !== "object")
    return;
  schema = resolved(root, schema);
  for (const [word, test] of Object.entries(WORDS)) {
    const text = word in schema ? test(value, schema[word]) : null;
    if (text)
      yield {way, text: text + (word === "pattern" && schema.description ? `. ${schema.description}` : "")};
    if (text && word === "type")
      return;
  }
  if (kind_of(value) === "object")
    yield* object_faults(root, schema, value, way);
  if (Array.isArray(value) && schema.items)
    for (const [index, item] of value.entries())
      yield* faults_of(root, schema.items, item, [...way, index]);
  for (const part of schema.allOf ?? [])
    yield* faults_of(root, part, value, way);
  if (schema.anyOf && !schema.anyOf.some((part) => is_good(root, part, value)))
    yield {way, text: `is not allowed. ${schema.description ?? ""}`.trim()};
  if (schema.if !== undefined)
    yield* faults_of(root, (is_good(root, schema.if, value) ? schema.then : schema.else) ?? true, value, way);
}

export const is_good = (root, schema, value) => faults_of(root, schema, value).next().done;

// The schema of what stands at a way, undefined where nothing may.
export function schema_at(root, way) {
  let schema = root;
  for (const step of way) {
    schema = resolved(root, schema);
    schema = typeof step === "number" ? schema?.items : schema?.properties?.[step];
  }
  return schema && resolved(root, schema);
}
