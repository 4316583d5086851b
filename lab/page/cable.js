// A cable test as a drawing: four pairs, as long as they are, and how each ends.
import {el, svg} from "./dom.js";

const STATES = {0: "sound", 1: "open"};

const word = (state) => STATES[state] ?? `fault ${state}`;

export function draw_cable(test) {
  const pairs = ["a", "b", "c", "d"].map((name) => ({name: name.toUpperCase(),
    state: test[`pair_${name}`], length: test[`cable_${name}_length_m`]}));
  const longest = Math.max(10, ...pairs.map(({length}) => length));
  const x = (metres) => 64 + metres / longest * 380;
  const picture = svg("svg", {class: "cable", viewBox: "0 0 620 150", role: "img",
    "aria-label": `Cable at port ${test.port}: ${pairs.map(({name, state, length}) => `pair ${name} ${word(state)}, ${length} m`).join("; ")}`},
    svg("rect", {class: "plug", x: 6, y: 6, width: 50, height: 138, rx: 6}),
    pairs.map(({name, state, length}, index) => {
      const y = 24 + index * 34;
      const good = state === 0;
      return [svg("text", {class: "mark", x: 31, y: y + 5, "text-anchor": "middle"}, name),
        svg("path", {class: `wire ${good ? "good" : "bad"}`, d: `M56 ${y - 4}H${x(length)}M56 ${y + 4}H${x(length)}`}),
        good ? svg("circle", {class: "end good", cx: x(length), cy: y, r: 7})
          : svg("path", {class: "end bad", d: `M${x(length) - 6} ${y - 7}l14 14m0-14l-14 14`}),
        svg("text", {class: "label", x: x(length) + 16, y: y + 5}, `${length} m, ${word(state)}`)];
    }));
  return el("figure", {class: "cable-place"}, picture, el("figcaption", {}, `Cable at port ${test.port}`));
}
