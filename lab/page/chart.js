// Lines over time, as SVG, with the same figures as a table.
import {el, fresh_id, replace, svg} from "./dom.js";
import {clock_time} from "./words.js";

const MARGIN = {left: 74, right: 16, top: 12, bottom: 26};

// 0, 20, 40 ...: some four round steps up to a value.
function ticks(highest) {
  if (!(highest > 0))
    return [0, 1];
  const rough = highest / 4;
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = [1, 2, 5, 10].map((factor) => factor * power).find((candidate) => candidate >= rough);
  return Array.from({length: Math.ceil(highest / step - 1e-9) + 1}, (_, i) => i * step);
}

function path_of(points, x, y) {
  let path = "";
  let open = false;
  for (const {time, value} of points) {
    if (value === null || value === undefined)
      open = false;
    else {
      path += `${open ? "L" : "M"}${x(time).toFixed(1)} ${y(value).toFixed(1)}`;
      open = true;
    }
  }
  return path;
}

function draw(series, unit_text, width, height, title) {
  const all = series.flatMap(({points}) => points.filter(({value}) => value !== null && value !== undefined));
  const times = all.map(({time}) => Date.parse(time));
  const first = Math.min(...times);
  const last = Math.max(...times, first + 1000);
  const steps = ticks(Math.max(...all.map(({value}) => value)));
  const top = steps.at(-1);
  const x = (time) => MARGIN.left + (Date.parse(time) - first) / (last - first) * (width - MARGIN.left - MARGIN.right);
  const y = (value) => height - MARGIN.bottom - value / top * (height - MARGIN.top - MARGIN.bottom);
  const stamps = [first, (first + last) / 2, last].map((time) => new Date(time).toISOString());
  return svg("svg", {class: "chart", width, height, viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": title},
    steps.map((step) => [
      svg("path", {class: "grid", d: `M${MARGIN.left} ${y(step)}H${width - MARGIN.right}`}),
      svg("text", {class: "axis", x: MARGIN.left - 8, y: y(step) + 4, "text-anchor": "end"}, unit_text(step))]),
    stamps.map((time, index) => svg("text", {class: "axis", x: x(time), y: height - 6,
      "text-anchor": ["start", "middle", "end"][index]}, clock_time(time))),
    series.map(({points}, index) => [
      svg("path", {class: `line line-${index + 1}`, d: path_of(points, x, y)}),
      points.filter(({value}) => value !== null && value !== undefined).map(({time, value}) =>
        svg(index ? "rect" : "circle", index
          ? {class: `dot dot-${index + 1}`, x: x(time) - 3, y: y(value) - 3, width: 6, height: 6}
          : {class: "dot dot-1", cx: x(time), cy: y(value), r: 3.2},
        svg("title", {}, `${clock_time(time)}: ${unit_text(value)}`)))]));
}

const figures = (series, unit_text, title) => el("details", {class: "figures"}, el("summary", {}, "As a table"),
  el("div", {class: "scroll", tabindex: 0, role: "region", "aria-label": `${title}, as a table`},
    el("table", {}, el("caption", {class: "hidden"}, title),
      el("thead", {}, el("tr", {}, el("th", {scope: "col"}, "Time"), series.map(({name}) => el("th", {scope: "col", class: "number"}, name)))),
      el("tbody", {}, series[0].points.map(({time}, row) => el("tr", {}, el("th", {scope: "row"}, clock_time(time)),
        series.map(({points}) => el("td", {class: "number"}, points[row]?.value === null || points[row]?.value === undefined ? "–" : unit_text(points[row].value)))))))));

// A chart that can be given new series, all of the same times:
// show([{name, points: [{time, value}]}]); a value may be null.
export function make_chart(title, unit_text, empty = "Two reports are needed for a line.") {
  let series = [];
  let width = 0;
  const board = el("div", {class: "board"});
  const names = el("ul", {class: "legend"});
  const table = el("div");
  const heading = el("h2", {id: fresh_id("chart")}, title);
  function redraw() {
    if (!width)
      return;
    const some = series.some(({points}) => points.some(({value}) => value !== null && value !== undefined));
    replace(board, some ? draw(series, unit_text, width, 220, title) : el("p", {class: "empty"}, empty));
    replace(names, some && series.map(({name}, index) => el("li", {}, svg("svg", {width: 22, height: 10, "aria-hidden": "true"},
      svg("path", {class: `line line-${index + 1}`, d: "M1 5H21"})), name)));
    const open = table.querySelector("details")?.open;
    replace(table, some && figures(series, unit_text, title));
    if (open)
      table.querySelector("details").open = true;
  }
  const watcher = new ResizeObserver(([{contentRect}]) => {
    if (Math.floor(contentRect.width) !== width) {
      width = Math.floor(contentRect.width);
      redraw();
    }
  });
  watcher.observe(board);
  return {
    element: el("section", {class: "chart-place", "aria-labelledby": heading.id}, heading, names, board, table),
    show(list) { series = list; redraw(); },
    stop() { watcher.disconnect(); },
  };
}
