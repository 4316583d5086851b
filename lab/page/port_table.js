// All ports as a table: sorted by any column, and some of them compared.
import {button, el, refill, replace, svg} from "./dom.js";
import {comparison} from "./compare.js";
import {SIGNS, link_text, neighbour_name, rate} from "./ports.js";
import {scaled} from "./words.js";

const bits = (bytes) => bytes === null ? "–" : scaled(bytes * 8, "bit/s");

// [title, what is sorted by, what is shown, further class]
const COLUMNS = [
  ["Port", (port) => port.number, (port, link) => el("a", {href: link, "data-key": `row-${port.id}`}, port.name)],
  ["Link", (port) => (port.enabled ? 1 : 0) + (port.up ? 1 : 0), (port) => [
    svg("svg", {class: `port ${port.sign}`, width: 14, height: 14, viewBox: "-1 -1 14 14", "aria-hidden": "true"},
      svg("path", {class: "sign", d: SIGNS[port.sign].path})), " ", link_text(port)]],
  ["PVID", (port) => port.vlan, (port) => port.vlan, "number"],
  ["Untagged", (port) => port.raw.untagged_vlans, (port) => port.raw.untagged_vlans || "–"],
  ["Tagged", (port) => port.raw.tagged_vlans, (port) => port.raw.tagged_vlans || "–"],
  ["PoE", (port) => port.power ?? -1, (port) => port.power === null ? "–" : `${port.power} W`, "number"],
  ["Received", (port) => port.rx ?? -1, (port) => bits(port.rx), "number"],
  ["Sent", (port) => port.tx ?? -1, (port) => bits(port.tx), "number"],
  ["Devices", (port) => port.macs.length, (port) => port.macs.length, "number"],
  ["Neighbour", (port) => port.neighbours.map(neighbour_name).join(), (port) => port.neighbours.map(neighbour_name).join(", ") || "–"],
  ["Reset", (port) => port.reset ? 1 : 0, (port) => port.reset ? "yes" : "–"],
];

// The rates of each port between two reports.
export function add_rates(ports, before, seconds) {
  for (const port of ports) {
    const then = before.find((other) => other.id === port.id)?.raw.statistics;
    const now = port.raw.statistics;
    port.rx = rate(now?.rx_bytes?.all, then?.rx_bytes?.all, seconds);
    port.tx = rate(now?.tx_bytes?.all, then?.tx_bytes?.all, seconds);
  }
}

export function make_table(link_of) {
  let ports = [];
  const order = {column: 0, falling: false};
  const chosen = new Set();
  const place = el("div", {class: "scroll", tabindex: 0, role: "region", "aria-label": "All ports"});
  const compared = el("div");

  function sort_by(column) {
    order.falling = order.column === column && !order.falling;
    order.column = column;
    draw();
  }
  function head([title, , , kind], index) {
    const here = order.column === index;
    return el("th", {scope: "col", class: kind, "aria-sort": here ? (order.falling ? "descending" : "ascending") : undefined},
      button([title, el("span", {class: "arrow", "aria-hidden": "true"}, here ? (order.falling ? " ▼" : " ▲") : "")],
        () => sort_by(index), {class: "sort", "data-key": `sort-${index}`}));
  }
  function choose(port, on) {
    on ? chosen.add(port.id) : chosen.delete(port.id);
    compare();
  }
  function row(port) {
    const box = el("input", {type: "checkbox", "aria-label": `Compare ${port.name}`, checked: chosen.has(port.id),
      "data-key": `compare-${port.id}`, onchange: (event) => choose(port, event.target.checked)});
    return el("tr", {"data-port": port.id}, COLUMNS.map(([, , shown, kind], index) => index === 0
      ? el("th", {scope: "row"}, el("span", {class: "pick"}, box, shown(port, link_of(port))))
      : el("td", {class: kind}, shown(port))));
  }
  function sorted() {
    const value = COLUMNS[order.column][1];
    const compare_values = (a, b) => typeof a === "string" ? a.localeCompare(b, "en", {numeric: true}) : a - b;
    return [...ports].sort((a, b) => (order.falling ? -1 : 1) * compare_values(value(a), value(b)) || a.number - b.number);
  }
  function draw() {
    refill(place, el("table", {class: "list ports"}, el("caption", {class: "hidden"}, "All ports"),
      el("thead", {}, el("tr", {}, COLUMNS.map(head))), el("tbody", {}, sorted().map(row))));
  }
  function compare() {
    const some = ports.filter((port) => chosen.has(port.id));
    replace(compared, some.length < 2 ? el("p", {class: "faint"}, "Tick two ports or more to compare them member by member.")
      : [el("h2", {}, "Compared"), comparison(some.map((port) => port.name),
        some.map(({raw: {id, ...rest}}) => rest), "Members in which the ports differ")]);
  }
  return {
    element: el("section", {"aria-label": "Table of ports"}, place, compared),
    show(list) { ports = list; draw(); compare(); },
  };
}
