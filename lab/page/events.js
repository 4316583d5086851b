// The event log, live: of all switches or one, of all kinds or one.
import {get} from "./api.js";
import {button, el, field, replace, select} from "./dom.js";
import {listen} from "./live.js";
import {trying} from "./notices.js";
import {show_frame} from "./frame.js";
import {clock_time, date_time, expected_by} from "./words.js";

const MOST = 400; // kept in the page
const PER_PAGE = 100;
const KINDS = ["registered", "checkin", "rejected", "settings-queued", "settings-delivered", "settings-acknowledged",
  "settings-refused", "action-queued", "action-answered", "poll", "time", "firmware", "misbehaviour", "tls-failed"];
const ALARMS = ["rejected", "settings-refused", "tls-failed", "misbehaviour"];

const mac_link = (mac) => mac && el("a", {class: "mono", href: `#/switch/${mac}`}, mac);

const what_was_wrong = (event) => event.kind === "rejected" && el("dl", {class: "facts verdict"},
  el("div", {}, el("dt", {}, "Wrong"), el("dd", {}, `${event.code}: ${event.reason}`)),
  el("div", {}, el("dt", {}, "Expected"), el("dd", {}, expected_by(event.code))));

const row = (event) => el("li", {"data-event": event.id, class: `event ${ALARMS.includes(event.kind) ? "alarm" : ""}`},
  el("time", {class: "number faint", datetime: event.time, title: date_time(event.time)}, clock_time(event.time)),
  el("span", {class: `chip ${ALARMS.includes(event.kind) ? "refused" : "calm"}`},
    el("span", {"aria-hidden": "true"}, ALARMS.includes(event.kind) ? "! " : ""), event.kind),
  el("div", {class: "event-text"}, event.text, " ", mac_link(event.mac), what_was_wrong(event)));

// {element, start(), stop()}; `filter` is read afresh whenever the list begins again.
function make_log(filter) {
  const list = el("ol", {class: "plain events"});
  const older = button("Older events", trying(() => load_older()));
  const empty = el("p", {class: "empty"}, "Nothing like that has happened yet.");
  let seen = new Set();
  let oldest = null;
  let stop = () => {};
  let round = 0;

  const fits = (event, {kind, mac}) => (!kind || event.kind === kind) && (!mac || event.mac === mac);
  function add(event, first) {
    if (seen.has(event.id))
      return;
    seen.add(event.id);
    first ? list.prepend(row(event)) : list.append(row(event));
    oldest = oldest === null ? event.id : Math.min(oldest, event.id);
    empty.hidden = true;
  }
  async function load_older() {
    const mine = round;
    const query = {count: PER_PAGE, kind: filter().kind, mac: filter().mac};
    const events = await get("/events/recent", oldest === null ? query : {...query, before: oldest});
    if (mine !== round)
      return;
    events.forEach((event) => add(event, false));
    older.hidden = events.length < PER_PAGE;
  }
  async function begin() {
    round++;
    stop();
    replace(list);
    [seen, oldest, empty.hidden] = [new Set(), null, false];
    const chosen = filter();
    stop = listen((event) => {
      if (!fits(event, chosen))
        return;
      add(event, true);
      while (list.children.length > MOST)
        list.lastElementChild.remove();
    });
    await load_older();
  }
  return {element: el("div", {class: "stack"}, list, empty, el("div", {class: "pages"}, older)), begin, stop: () => stop()};
}

const kind_choice = (chosen) => select([["", "All kinds"], ...KINDS.map((kind) => [kind, kind])], chosen);

const MAC = /^[0-9A-F]{2}(:[0-9A-F]{2}){5}$/;

export async function show_events(place) {
  const kind = kind_choice("");
  const known = el("datalist", {id: "known-switches"});
  const mac = el("input", {list: "known-switches", autocomplete: "off", placeholder: "all switches"});
  const log = make_log(() => {
    const text = mac.value.trim().toUpperCase();
    return {kind: kind.value, mac: MAC.test(text) ? text : ""};
  });
  place.append(el("h1", {}, "Events"), el("div", {class: "bar"}, field("Switch", mac), known, field("Kind", kind)), log.element);
  kind.addEventListener("change", trying(log.begin));
  mac.addEventListener("change", trying(log.begin));
  const {switches} = await get("/overview", {count: 500});
  replace(known, switches.map((entry) => el("option", {value: entry.mac}, entry.name)));
  await log.begin();
  return log.stop;
}

export async function show_switch_events(place, mac) {
  const kind = kind_choice("");
  const log = make_log(() => ({kind: kind.value, mac: mac.toUpperCase()}));
  kind.addEventListener("change", trying(log.begin));
  const content = el("div", {class: "stack"}, el("div", {class: "bar"}, field("Kind", kind)), log.element);
  const leave = await show_frame(place, mac, "events", content, async () => {});
  await log.begin();
  return () => { leave(); log.stop(); };
}
