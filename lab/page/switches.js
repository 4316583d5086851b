// All switches of the lab, a page of them at a time.
import {get} from "./api.js";
import {button, el, field, refill} from "./dom.js";
import {listen, soon} from "./live.js";
import {STATES, ago, date_time, expected_by, plural} from "./words.js";

const PER_PAGE = 50;

export const state_chip = (state) =>
  el("span", {class: `chip ${state}`}, el("span", {"aria-hidden": "true"}, STATES[state].sign), " ", STATES[state].word);

export const refusal_text = (refusal) =>
  el("div", {class: "refusal"},
    el("strong", {}, `${refusal.code}: `), refusal.reason, ". Expected: ", expected_by(refusal.code), ". ",
    el("span", {class: "faint"}, ago(refusal.time)));

function settings_cell(entry) {
  return [el("span", {class: "number"}, entry.reported_seqno || "–"),
    entry.pending > 0 && el("span", {class: "pending"}, ` → ${entry.pending_seqno}`,
      entry.pending > 1 && ` (${entry.pending} waiting)`)];
}

function row(entry) {
  const link = el("a", {href: `#/switch/${entry.mac}`, "data-key": entry.mac}, entry.name || entry.mac);
  return el("tr", {"data-mac": entry.mac},
    el("th", {scope: "row"}, link, el("div", {class: "faint mono"}, entry.mac),
      entry.refusal && refusal_text(entry.refusal)),
    el("td", {}, state_chip(entry.state)),
    el("td", {"data-label": "Model"}, entry.model || "–"),
    el("td", {"data-label": "Firmware"}, entry.firmware || "–"),
    el("td", {"data-label": "Last seen", title: date_time(entry.last_seen)}, ago(entry.last_seen)),
    el("td", {"data-label": "Settings"}, settings_cell(entry)),
    el("td", {"data-label": "Waiting polls"}, el("span", {class: "number"}, entry.waiting_polls)));
}

function table(entries) {
  const head = [["Name"], ["State"], ["Model"], ["Firmware"], ["Last seen"],
    ["Settings", "Sequence number reported, and the newest one pending"], ["Waiting polls"]];
  return el("table", {class: "list cards"},
    el("caption", {class: "hidden"}, "Switches"),
    el("thead", {}, el("tr", {}, head.map(([text, title]) => el("th", {scope: "col", title}, text)))),
    el("tbody", {}, entries.map(row)));
}

function strangers(entries) {
  if (entries.length === 0)
    return null;
  return el("section", {class: "strangers"}, el("h2", {}, "Refused, and not registered"),
    el("ul", {class: "plain"}, entries.map((entry) => el("li", {},
      el("span", {class: "mono"}, entry.mac), " ",
      el("a", {href: `#/lab/register/${entry.mac}`}, "Register it"), refusal_text(entry.refusal)))));
}

export async function show_switches(place) {
  const query = {search: "", state: "", from: 0};
  const search = el("input", {type: "search", placeholder: "Name, MAC, model or firmware", autocomplete: "off"});
  const states = el("div", {class: "filters", role: "group", "aria-label": "State"});
  const list = el("div", {class: "scroll"});
  const pages = el("nav", {class: "pages", "aria-label": "Pages"});
  const others = el("div");
  place.append(
    el("div", {class: "title"}, el("h1", {}, "Switches"), el("a", {class: "button", href: "#/lab/register"}, "Register a switch")),
    el("div", {class: "bar"}, field("Search", search), states), list, pages, others);

  function show_states(counts) {
    const all = Object.values(counts).reduce((sum, count) => sum + count, 0);
    const choice = (state, word, count) => button(`${word} ${count}`, () => ask({state, from: 0}),
      {"aria-pressed": String(query.state === state), "data-key": `state-${state}`, class: `filter ${state}`});
    refill(states, choice("", "All", all), Object.entries(STATES).map(([state, {word}]) =>
      (counts[state] || query.state === state) && choice(state, word, counts[state] ?? 0)));
    return query.state ? counts[query.state] ?? 0 : all;
  }

  function show_pages(total) {
    const last = Math.min(query.from + PER_PAGE, total);
    const step = (text, from, possible) =>
      button(text, () => ask({from}), {disabled: !possible, "data-key": `page-${text}`});
    refill(pages, total > PER_PAGE && [step("Previous", query.from - PER_PAGE, query.from > 0),
      el("span", {}, `${query.from + 1} to ${last} of ${total}`),
      step("Next", query.from + PER_PAGE, last < total)]);
  }

  let asked = 0;
  async function ask(change) {
    Object.assign(query, change);
    const number = ++asked;
    const found = await get("/overview", {...query, count: PER_PAGE});
    if (number !== asked)
      return;
    const total = show_states(found.states);
    const none = query.search || query.state ? "No switch is like that." : "No switch is registered yet.";
    refill(list, found.switches.length ? table(found.switches) : el("p", {class: "empty"}, none));
    show_pages(total);
    refill(others, strangers(found.strangers));
  }

  search.addEventListener("input", soon(() => ask({search: search.value.trim(), from: 0}), 150));
  await ask({});
  const again = soon(() => ask({}).catch(() => {}), 500);
  const clock = setInterval(again, 10000);
  const stop = listen(again);
  return () => { stop(); clearInterval(clock); again.cancel(); };
}
