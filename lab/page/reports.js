// The reports of a switch: one as a tree, or two compared.
import {get, of_switch} from "./api.js";
import {comparison} from "./compare.js";
import {button, el, field, refill, replace} from "./dom.js";
import {soon} from "./live.js";
import {trying} from "./notices.js";
import {no_report, show_frame} from "./frame.js";
import {make_tree} from "./tree.js";
import {bytes, date_time} from "./words.js";

const PER_PAGE = 12;

export async function show_reports(place, mac) {
  const tree = make_tree("Report");
  const list = el("div", {class: "scroll"});
  const pages = el("nav", {class: "pages", "aria-label": "Pages of reports"});
  const shown_title = el("h2");
  const compared = el("div");
  const only = el("input", {type: "search", autocomplete: "off", placeholder: "such as ports › id 3"});
  const query = {from: 0, shown: null, pair: []};
  const load = (id) => get(of_switch(mac, `/reports/${id}`));

  const show_one = trying(async (id) => {
    query.shown = id;
    replace(shown_title, `Report ${id}`);
    tree.show(await load(id));
    await show_list();
  });
  const show_pair = trying(async () => {
    const pair = [...query.pair].sort((a, b) => a - b);
    if (pair.length < 2)
      return replace(compared, el("p", {class: "faint"}, "Tick two reports to compare them."));
    replace(compared, comparison(pair.map((id) => `Report ${id}`), await Promise.all(pair.map(load)),
      "Members in which the reports differ", only.value.trim()));
  });
  // A third takes the place of the one that was ticked first.
  function pick(id, on) {
    query.pair = on ? [...query.pair, id].slice(-2) : query.pair.filter((other) => other !== id);
    show_pair();
    trying(show_list)();
  }
  const row = ({id, time, bytes: size}) => el("tr", {"data-report": id, class: id === query.shown ? "chosen" : undefined},
    el("td", {}, el("input", {type: "checkbox", "aria-label": `Compare report ${id}`, checked: query.pair.includes(id),
      "data-key": `pick-${id}`, onchange: ({target}) => pick(id, target.checked)})),
    el("th", {scope: "row"}, button(`Report ${id}`, () => show_one(id), {class: "link", "data-key": `report-${id}`,
      "aria-current": id === query.shown ? "true" : undefined})),
    el("td", {}, date_time(time)), el("td", {class: "number"}, bytes(size)));

  async function show_list() {
    const {total, entries} = await get(`/overview/${mac}/reports`, {from: query.from, count: PER_PAGE});
    refill(list, el("table", {class: "reports"}, el("caption", {class: "hidden"}, "Reports"),
      el("thead", {}, el("tr", {}, ["Compare", "Report", "Received", "Size"].map((text) => el("th", {scope: "col"}, text)))),
      el("tbody", {}, entries.map(row))));
    const step = (text, from, possible) => button(text, trying(() => { query.from = from; return show_list(); }),
      {disabled: !possible, "data-key": text});
    refill(pages, total > PER_PAGE && [step("Newer", query.from - PER_PAGE, query.from > 0),
      el("span", {}, `${query.from + 1} to ${Math.min(total, query.from + PER_PAGE)} of ${total}`),
      step("Older", query.from + PER_PAGE, query.from + PER_PAGE < total)]);
    return entries;
  }
  only.addEventListener("input", soon(show_pair, 200));
  const content = el("div", {class: "stack"});
  return show_frame(place, mac, "reports", content, async (report) => {
    if (!report)
      return replace(content, no_report());
    if (!list.isConnected)
      replace(content, el("div", {class: "columns uneven"},
        el("section", {class: "panel"}, el("h2", {}, "Kept reports"), list, pages),
        el("section", {class: "panel"}, shown_title, tree.element)),
      el("section", {class: "panel"}, el("h2", {}, "Compared"), field("Only members with", only), compared));
    const entries = await show_list();
    if (query.shown === null && entries.length) {
      await show_one(entries[0].id);
      await show_pair();
    }
  });
}
