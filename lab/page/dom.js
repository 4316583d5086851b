// Elements made from plain values. A text only ever becomes a text node or an attribute's value.

const SVG = "http://www.w3.org/2000/svg";

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes ?? {})) {
    if (value === undefined || value === null || value === false)
      continue;
    if (name.startsWith("on"))
      element.addEventListener(name.slice(2), value);
    else
      element.setAttribute(name, value === true ? "" : String(value));
  }
  append(element, children);
  return element;
}

export function append(element, children) {
  for (const child of children.flat(Infinity))
    if (child !== undefined && child !== null && child !== false)
      element.append(child instanceof Node ? child : String(child));
}

// el("a", {href: "#/", onclick: f}, "text", another): attributes that are undefined, null or false
// are left out, and so are such children.
export const el = (tag, attributes, ...children) =>
  fill(document.createElement(tag), attributes, children);

export const svg = (tag, attributes, ...children) =>
  fill(document.createElementNS(SVG, tag), attributes, children);

export function replace(element, ...children) {
  element.replaceChildren();
  append(element, children);
}

let last = 0;
export const fresh_id = (prefix) => `${prefix}-${++last}`;

// A labelled control. The control gets an id that its label speaks of.
export function field(label, control, hint) {
  control.id ||= fresh_id("field");
  const note = hint && el("span", {class: "hint", id: `${control.id}-hint`}, hint);
  if (note)
    control.setAttribute("aria-describedby", note.id);
  return el("div", {class: "field"}, el("label", {for: control.id}, label), control, note);
}

export function select(options, chosen, attributes) {
  const list = el("select", attributes, options.map(([value, text]) =>
    el("option", {value, selected: String(value) === String(chosen)}, text)));
  return list;
}

export const button = (text, onclick, attributes) =>
  el("button", {type: "button", onclick, ...attributes}, text);

// Puts new content into a place without losing the focus, where an element of the same
// data-key is there again.
export function refill(place, ...children) {
  const key = place.contains(document.activeElement) && document.activeElement.dataset?.key;
  replace(place, ...children);
  if (key)
    place.querySelector(`[data-key="${CSS.escape(key)}"]`)?.focus({preventScroll: true});
}
