// JSON as it is typed: where each value stands, where the text breaks off, and what is expected at
// the cursor.

class Broken extends Error {
  constructor(at, text) {
    super(text);
    this.at = at;
  }
}

const key_of = (way) => JSON.stringify(way);

// {value, places: Map of a way to [start, end], error: {at, text}}
export function read_json(text) {
  const places = new Map();
  let at = 0;
  const fail = (what) => { throw new Broken(at, what); };
  const skip = () => { while (/[ \t\r\n]/.test(text[at] ?? "")) at++; };

  function read_string() {
    const found = /"(?:[^"\\\x00-\x1f]|\\(?:["\\/bfnrt]|u[0-9a-fA-F]{4}))*"/y;
    found.lastIndex = at;
    const match = found.exec(text);
    if (!match)
      fail("a text is not closed, or has a character that must be escaped");
    at += match[0].length;
    return JSON.parse(match[0]);
  }
  function read_word() {
    const found = /-?(?:0|[1-9]\d*)(?:\.\d+)?(?:[eE][+-]?\d+)?|true|false|null/y;
    found.lastIndex = at;
    const match = found.exec(text);
    if (!match)
      fail(at >= text.length ? "the document breaks off here" : "a value is expected here");
    at += match[0].length;
    return JSON.parse(match[0]);
  }
  function read_members(way) {
    const object = {};
    at++;
    skip();
    for (let first = true; text[at] !== "}"; first = false) {
      if (!first) {
        if (text[at] !== ",")
          fail("\",\" or \"}\" is expected here");
        at++;
        skip();
      }
      if (text[at] !== "\"")
        fail("a member's name in quotes is expected here");
      const start = at;
      const name = read_string();
      if (Object.hasOwn(object, name)) {
        at = start;
        fail(`"${name}" is there twice`);
      }
      places.set(key_of([...way, name, "name"]), [start, at]);
      skip();
      if (text[at] !== ":")
        fail("\":\" is expected here");
      at++;
      Object.defineProperty(object, name, {value: read_value([...way, name]), enumerable: true, configurable: true, writable: true});
      skip();
    }
    at++;
    return object;
  }
  function read_items(way) {
    const list = [];
    at++;
    skip();
    while (text[at] !== "]") {
      if (list.length) {
        if (text[at] !== ",")
          fail("\",\" or \"]\" is expected here");
        at++;
      }
      list.push(read_value([...way, list.length]));
      skip();
    }
    at++;
    return list;
  }
  function read_value(way) {
    skip();
    if (way.length > 64)
      fail("the document is nested too deeply");
    const start = at;
    const read = {"{": read_members, "[": read_items, "\"": read_string}[text[at]] ?? read_word;
    const value = read(way);
    places.set(key_of(way), [start, at]);
    return value;
  }
  try {
    const value = read_value([]);
    skip();
    if (at < text.length)
      fail("nothing is expected after the document");
    return {value, places, error: null};
  } catch (failure) {
    if (!(failure instanceof Broken))
      throw failure;
    return {value: undefined, places, error: {at: failure.at, text: failure.message}};
  }
}

// Where the value of a way stands, or its name if that is what is wrong, or what it is in.
export function place_of(places, way) {
  for (let length = way.length; length >= 0; length--) {
    const part = way.slice(0, length);
    const found = places.get(key_of([...part, "name"])) ?? places.get(key_of(part));
    if (found)
      return found;
  }
  return [0, 0];
}

export const line_of = (text, at) => text.slice(0, at).split("\n").length;

// What is expected at the cursor: {way, name: bool, typed, from, present}. `typed` is what stands
// between `from` and the cursor; `present` are the names that the object already has.
export function expected_at(text, cursor) {
  const frames = [];
  let at = 0;
  let token = {from: cursor, typed: ""};
  const top = () => frames.at(-1);
  while (at < cursor) {
    const character = text[at];
    if (character === "\"" || /[\w.+-]/.test(character)) {
      const found = character === "\"" ? /"(?:[^"\\\n]|\\.)*"?/y : /[\w.+-]+/y;
      found.lastIndex = at;
      const word = found.exec(text)[0];
      const closed = character !== "\"" || (word.length > 1 && word.endsWith("\""));
      if (at + word.length >= cursor && !(closed && character === "\"" && at + word.length === cursor)) {
        token = {from: at, typed: text.slice(at, cursor)};
        break;
      }
      if (top()?.names && top().wants_name) {
        top().key = closed ? JSON.parse(word) : word;
        top().names.push(top().key);
        top().wants_name = false;
      }
      at += word.length;
      continue;
    }
    if (character === "{")
      frames.push({names: [], wants_name: true});
    else if (character === "[")
      frames.push({index: 0});
    else if (character === "}" || character === "]")
      frames.pop();
    else if (character === "," && top())
      top().names ? top().wants_name = true : top().index++;
    at++;
  }
  const before = text.slice(0, token.from).trimEnd().at(-1);
  const way = frames.map((frame) => frame.names ? frame.key : frame.index);
  const name = Boolean(top()?.names && top().wants_name);
  if (name ? !"{,".includes(before) : !(before === undefined || ":[,".includes(before)))
    return null;
  return {way: name ? way.slice(0, -1) : way, name, ...token, present: top()?.names ?? []};
}
