// The front panel as a picture: copper in two rows, then fibre, then groups. It is broken into as
// many banks as the width asks for, so that a port is as large on a telephone as on a desk.
import {el, replace, select, svg} from "./dom.js";
import {SIGNS, neighbour_name, port_text} from "./ports.js";

const CELL = {width: 58, height: 62};
const GAP = 14; // between blocks
const BLOCK = 6; // columns
const EDGE = 12;

// What is written below the sign of a port.
const LABELS = {
  speed: ["Speed", (port) => port.up ? port.speed.short : port.enabled ? "" : "off"],
  power: ["PoE draw", (port) => port.power ? `${port.power} W` : ""],
  vlan: ["VLAN", (port) => String(port.vlan)],
  neighbour: ["Neighbour", (port) => port.neighbours[0] ? neighbour_name(port.neighbours[0]) : ""],
};

// Columns of two ports, and where a block ends.
function columns_of(ports) {
  const columns = [];
  for (const kind of ["copper", "fibre", "group"]) {
    const some = ports.filter((port) => port.kind === kind);
    for (let i = 0; i < some.length; i += 2)
      columns.push({ports: some.slice(i, i + 2), gap: i > 0 ? (i / 2) % BLOCK === 0 : columns.length > 0});
  }
  return columns;
}

// Where each column stands: [{ports, x, bank}], and how large all is.
function lay_out(columns, width) {
  const placed = [];
  let x = EDGE;
  let bank = 0;
  let widest = 0;
  for (const column of columns) {
    if (column.gap && x > EDGE)
      x += GAP;
    if (x > EDGE && x + CELL.width + EDGE > width) {
      bank++;
      x = EDGE;
    }
    placed.push({...column, x, bank});
    x += CELL.width;
    widest = Math.max(widest, x + EDGE);
  }
  return {placed, width: widest, banks: bank + 1};
}

const short = (text, length) => text.length > length ? `${text.slice(0, length - 1)}…` : text;

const written = (port, label) => short(LABELS[label][1](port), 8);

function draw_port(port, label, x, y) {
  const wide = CELL.width - 6;
  const high = CELL.height - 6;
  const shape = {copper: {rx: 5}, fibre: {rx: 0}, group: {rx: 16}}[port.kind];
  return [
    svg("rect", {class: "jack", x: x + 3, y: y + 3, width: wide, height: high, ...shape}),
    port.kind === "fibre" && svg("path", {class: "latch", d: `M${x + 12} ${y + high - 1}h${wide - 18}`}),
    svg("text", {class: "mark", x: x + CELL.width / 2 - 9, y: y + 24, "text-anchor": "middle"}, port.mark), " ",
    svg("path", {class: "sign", d: SIGNS[port.sign].path, transform: `translate(${x + CELL.width / 2 + 5} ${y + 14})`}),
    svg("text", {class: "label", x: x + CELL.width / 2, y: y + 45, "text-anchor": "middle"}, written(port, label)),
    port.power > 0 && svg("path", {class: "bolt", d: `M${x + 11} ${y + 5}l-4 7h3l-2 6 6-8h-3l2-5z`}),
    port.reset && svg("g", {class: "reset", transform: `translate(${x + wide - 7} ${y + 1})`},
      svg("circle", {cx: 7, cy: 7, r: 7.5}),
      svg("path", {d: "M10.5 5.5a4 4 0 1 0 .5 2.5M11 3v3h-3"})),
  ];
}

function draw(ports, label, width, link_of, current) {
  const layout = lay_out(columns_of(ports), width);
  const bank_height = 2 * CELL.height + 2 * EDGE;
  const height = layout.banks * (bank_height + 8) - 8;
  const picture = svg("svg", {class: "panel-picture", width: layout.width, height,
    viewBox: `0 0 ${layout.width} ${height}`, role: "group", "aria-label": "Front panel"});
  for (let bank = 0; bank < layout.banks; bank++) {
    const last = layout.placed.filter((column) => column.bank === bank).at(-1);
    picture.append(svg("rect", {class: "chassis", x: 0, y: bank * (bank_height + 8),
      width: last.x + CELL.width + EDGE, height: bank_height, rx: 9}));
  }
  for (const {ports: pair, x, bank} of layout.placed)
    pair.forEach((port, row) => {
      const y = bank * (bank_height + 8) + EDGE + row * CELL.height;
      picture.append(svg("a", {href: link_of(port), class: `port ${port.kind} ${port.sign}`, tabindex: -1,
        "data-port": port.id, "aria-current": port.id === current ? "true" : undefined, "data-key": `panel-${port.id}`,
        "aria-label": `${port.mark} ${written(port, label)}, ${port_text(port)}`},
        draw_port(port, label, x, y)));
    });
  return picture;
}

// One port takes part in the order of tabs, arrows lead to the others.
function walk_by_keys(picture, told) {
  const links = [...picture.querySelectorAll("a")];
  const steps = {ArrowRight: 2, ArrowLeft: -2, ArrowDown: 1, ArrowUp: -1, Home: -Infinity, End: Infinity};
  const into_order = (link) => links.forEach((other) => other.setAttribute("tabindex", other === link ? 0 : -1));
  if (links.length)
    into_order(links.find((link) => link.hasAttribute("aria-current")) ?? links[0]);
  picture.addEventListener("keydown", (event) => {
    const step = steps[event.key];
    const at = links.indexOf(event.target.closest("a"));
    if (step === undefined || at < 0)
      return;
    event.preventDefault();
    links[Math.min(links.length - 1, Math.max(0, at + step))].focus();
  });
  for (const link of links) {
    link.addEventListener("focus", () => { into_order(link); told(link.dataset.port); });
    link.addEventListener("mouseenter", () => told(link.dataset.port));
  }
}

const legend = () => el("ul", {class: "legend", "aria-label": "Signs"},
  Object.entries(SIGNS).map(([kind, {text, path}]) => el("li", {},
    svg("svg", {class: `port ${kind}`, width: 14, height: 14, viewBox: "-1 -1 14 14", "aria-hidden": "true"},
      svg("path", {class: "sign", d: path})), text)),
  el("li", {}, svg("svg", {width: 14, height: 16, viewBox: "0 3 14 16", "aria-hidden": "true"},
    svg("path", {class: "bolt", d: "M9 5l-4 7h3l-2 6 6-8h-3l2-5z"})), "draws power"),
  el("li", {}, svg("svg", {class: "reset", width: 16, height: 16, viewBox: "-1 -1 16 16", "aria-hidden": "true"},
    svg("circle", {cx: 7, cy: 7, r: 7.5}), svg("path", {d: "M10.5 5.5a4 4 0 1 0 .5 2.5M11 3v3h-3"})), "reset since the last check-in"));

// A panel that can be given new ports: {element, show(ports)}.
export function make_panel(link_of, current) {
  let ports = [];
  let width = 0;
  const board = el("div", {class: "board"});
  const told = el("p", {class: "told"}, "Point at a port for its VLAN and its neighbour.");
  const label = select(Object.entries(LABELS).map(([value, [text]]) => [value, text]), "speed",
    {onchange: () => redraw(), "aria-label": "Written on the ports"});

  function tell(id) {
    const port = ports.find((candidate) => candidate.id === id);
    if (port)
      replace(told, port_text(port));
  }
  function redraw() {
    if (!width || !ports.length)
      return;
    const focused = board.contains(document.activeElement) ? document.activeElement.dataset.port : null;
    const picture = draw(ports, label.value, width, link_of, current);
    replace(board, picture);
    walk_by_keys(picture, tell);
    if (focused)
      picture.querySelector(`[data-port="${CSS.escape(focused)}"]`)?.focus({preventScroll: true});
  }
  const watcher = new ResizeObserver(([{contentRect}]) => {
    if (Math.floor(contentRect.width) !== width) {
      width = Math.floor(contentRect.width);
      redraw();
    }
  });
  watcher.observe(board);
  return {
    element: el("section", {class: "panel front", "aria-label": "Front panel and legend"},
      el("div", {class: "bar"}, legend(), el("div", {class: "field inline"}, el("span", {class: "faint", "aria-hidden": "true"}, "Show"), label)),
      board, told),
    show(list) { ports = list; redraw(); },
    stop() { watcher.disconnect(); },
  };
}
