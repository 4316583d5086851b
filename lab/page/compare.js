// Documents beside each other, member by member.
import {el} from "./dom.js";

// An element of a list is known by its id or its name, where all have one that is their own.
function key_of(list) {
  for (const name of ["id", "name"]) {
    const keys = list.map((item) => item?.[name]);
    if (keys.every((key) => key !== undefined) && new Set(keys).size === keys.length)
      return (item) => `${name} ${item[name]}`;
  }
  return (item, index) => String(index + 1);
}

// Every value of a document by the way to it: Map of "system › ports › id 3 › pvid" to 20.
export function flatten(document, way = [], into = new Map()) {
  if (Array.isArray(document) && document.length) {
    const key = key_of(document);
    document.forEach((item, index) => flatten(item, [...way, key(item, index)], into));
  } else if (document !== null && typeof document === "object" && Object.keys(document).length) {
    for (const [name, value] of Object.entries(document))
      flatten(value, [...way, name], into);
  } else {
    into.set(way.join(" › "), document);
  }
  return into;
}

export const text_of = (value) =>
  value === undefined ? "–" : typeof value === "bigint" ? String(value) : JSON.stringify(value);

// The members in which the documents differ: [[way, [values]]].
export function differences(documents) {
  const flat = documents.map((document) => flatten(document));
  const ways = new Set(flat.flatMap((values) => [...values.keys()]));
  return [...ways].map((way) => [way, flat.map((values) => values.get(way))])
    .filter(([, values]) => values.some((value) => text_of(value) !== text_of(values[0])));
}

export function comparison(titles, documents, caption, only = "") {
  const rows = differences(documents).filter(([way]) => way.toLowerCase().includes(only.toLowerCase()));
  const shown = rows.slice(0, 500);
  if (!rows.length)
    return el("p", {class: "empty"}, "They do not differ.");
  return el("div", {class: "scroll", tabindex: 0, role: "region", "aria-label": caption},
    el("table", {class: "list comparison"}, el("caption", {class: "hidden"}, caption),
      el("thead", {}, el("tr", {}, el("th", {scope: "col"}, "Member"), titles.map((title) => el("th", {scope: "col"}, title)))),
      el("tbody", {}, shown.map(([way, values]) => el("tr", {}, el("th", {scope: "row", class: "mono"}, way),
        values.map((value) => el("td", {class: "mono"}, text_of(value))))))),
    rows.length > shown.length && el("p", {class: "faint"}, `and ${rows.length - shown.length} more`));
}
