// A document as a tree: branches fold, and a search leaves what holds the word.
import {text_of} from "./compare.js";
import {button, el, field, replace} from "./dom.js";
import {soon} from "./live.js";

const MOST = 400; // matches shown at once

const is_branch = (value) => value !== null && typeof value === "object";
const entries_of = (value) => Array.isArray(value) ? value.map((item, index) => [index, item]) : Object.entries(value);

// What tells the elements of a list apart.
const title_of = (value) => !is_branch(value) || Array.isArray(value) ? ""
  : ["id", "name", "acl_name", "port", "host"].filter((name) => name in value).slice(0, 1).map((name) => `${name} ${value[name]}`).join("");

const count_of = (value) => Array.isArray(value) ? `[${value.length}]` : `{${Object.keys(value).length}}`;

function marked(text, word) {
  const at = word ? text.toLowerCase().indexOf(word) : -1;
  return at < 0 ? text : [text.slice(0, at), el("mark", {}, text.slice(at, at + word.length)), text.slice(at + word.length)];
}

const leaf = (name, value, word) => el("li", {class: "leaf mono"},
  el("span", {class: "key"}, marked(String(name), word)), ": ", el("span", {class: `value ${typeof value}`}, marked(text_of(value), word)));

// Children are made when a branch is opened, for a report has some ten thousand members.
function branch(name, value, word, open, make) {
  const list = el("ul", {class: "tree"});
  let made = false;
  const fill = () => {
    if (!made)
      replace(list, make());
    made = true;
  };
  const about = typeof name === "number" ? title_of(value) : "";
  const fold = el("details", {open, ontoggle: () => fold.open && fill()},
    el("summary", {class: "mono"}, el("span", {class: "key"}, marked(String(name), word)), " ",
      el("span", {class: "faint"}, about, about && " ", count_of(value))), list);
  fold.unfold = (to) => {
    if (to)
      fill();
    fold.open = to;
  };
  if (open)
    fill();
  return el("li", {}, fold);
}

const plain = (value, depth, word = "") => entries_of(value).map(([name, item]) => is_branch(item)
  ? branch(name, item, word, depth > 0, () => plain(item, depth - 1, word)) : leaf(name, item, word));

// The part of a document that holds the word, as tree items; `left` counts down the matches.
function found(value, word, left) {
  const items = [];
  for (const [name, item] of entries_of(value)) {
    if (left.count <= 0)
      break;
    const named = String(name).toLowerCase().includes(word);
    if (!is_branch(item)) {
      if (named || text_of(item).toLowerCase().includes(word)) {
        left.count--;
        items.push(leaf(name, item, word));
      }
    } else if (named) {
      left.count--;
      items.push(branch(name, item, word, false, () => plain(item, 0, word)));
    } else {
      const inside = found(item, word, left);
      if (inside.length)
        items.push(branch(name, item, word, true, () => inside));
    }
  }
  return items;
}

export function make_tree(label) {
  let shown = {};
  const search = el("input", {type: "search", autocomplete: "off", placeholder: "A member or a value"});
  const place = el("div", {class: "tree-place"});
  function draw() {
    const word = search.value.trim().toLowerCase();
    const left = {count: MOST};
    const items = word ? found(shown, word, left) : plain(shown, 1);
    replace(place, items.length ? el("ul", {class: "tree", "aria-label": label}, items) : el("p", {class: "empty"}, "Nothing in it is like that."),
      left.count <= 0 && el("p", {class: "faint"}, `The first ${MOST} matches are shown.`));
  }
  // Level by level, so that what one level makes is opened too.
  function fold_all(open) {
    const done = new Set();
    for (let level = 0; level < 12; level++)
      for (const fold of place.querySelectorAll("details"))
        if (!done.has(fold) && done.add(fold))
          fold.unfold(open);
  }
  search.addEventListener("input", soon(draw, 150));
  return {
    element: el("div", {}, el("div", {class: "bar"}, field("Search the report", search),
      el("div", {class: "buttons"}, button("Unfold all", () => fold_all(true)), button("Fold all", () => fold_all(false)))), place),
    show(document) { shown = document; draw(); },
  };
}
