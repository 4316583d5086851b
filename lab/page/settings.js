// Settings of a switch: an editor, forms, and the way of every document.
import {get, of_switch, post, print, remove} from "./api.js";
import {comparison} from "./compare.js";
import {contradictions} from "./contradictions.js";
import {make_daily} from "./daily.js";
import {button, el, refill, replace} from "./dom.js";
import {faults_in, make_editor} from "./editor.js";
import {notice, trying} from "./notices.js";
import {load_schema} from "./schema.js";
import {show_frame} from "./frame.js";
import {clock_time, plural} from "./words.js";

const PER_PAGE = 10;
const pretty = (document) => print(document, 2);

const STEPS = [["queued", "Queued"], ["delivered", "Delivered"], ["acknowledged", "Acknowledged"]];
const REACHED = {pending: 1, delivered: 2, acknowledged: 3, refused: 2};

// Queued, delivered, acknowledged or refused: what is reached is filled.
function way_signs({state, tries}) {
  const last = state === "refused" ? ["refused", "Refused"] : STEPS[2];
  return el("ol", {class: "steps"}, [STEPS[0], STEPS[1], last].map(([kind, text], index) => {
    const reached = index < REACHED[state] || (index === 2 && state === "refused");
    return el("li", {class: `${reached ? "reached" : ""} ${kind}`},
      el("span", {"aria-hidden": "true"}, reached ? (kind === "refused" ? "✕" : "✓") : "○"), " ", text,
      index === 1 && tries > 1 && ` ${tries} times`, !reached && el("span", {class: "hidden"}, ", not yet"));
  }));
}

function verdict(document, report, state) {
  const against = report ? contradictions(document, report) : [];
  if (!report)
    return el("p", {class: "faint"}, "No report has come since it was delivered.");
  if (against.length === 0)
    return el("p", {class: state === "refused" ? "" : "right"}, "The next report contradicts nothing of it.");
  return [el("p", {class: "wrong"}, `The next report contradicts ${plural(against.length, "part")} of it.`),
    el("div", {class: "scroll", tabindex: 0, role: "region", "aria-label": "Contradictions"},
      el("table", {class: "contradictions"}, el("caption", {class: "hidden"}, "What the next report contradicts"),
        el("thead", {}, el("tr", {}, ["Member", "Wanted", "Reported"].map((text) => el("th", {scope: "col"}, text)))),
        el("tbody", {}, against.map(([way, wanted, reported]) => el("tr", {}, el("th", {scope: "row", class: "mono"}, way),
          el("td", {class: "mono"}, wanted), el("td", {class: "mono"}, reported))))))];
}

async function load_way(mac, entry) {
  const {events, report} = await get(`/overview/${mac}/settings/${entry.config_seqno}`);
  let next = null;
  if (report)
    next = await get(of_switch(mac, `/reports/${report}`)).catch(() => null);
  return [el("ol", {class: "plain log"}, events.map((event) => el("li", {},
    el("span", {class: "faint number"}, clock_time(event.time)), " ", event.text))),
    entry.state !== "pending" && verdict(entry.document, next, entry.state),
    el("pre", {class: "mono document", tabindex: 0, role: "region", "aria-label": `Document ${entry.config_seqno}`}, pretty(entry.document))];
}

// Puts children into a place only where they are others than before: a press that has begun on one goes on.
function refill_changed(place, children) {
  if (children.length !== place.children.length || children.some((child, index) => child !== place.children[index]))
    refill(place, children);
}

// One document of the queue. Its element stays while the document goes its way.
function make_item(mac, number, {edit, withdraw}) {
  let entry = null;
  let shown = "";
  const signs = el("span");
  const inside = el("div", {class: "inside"});
  const buttons = el("div", {class: "buttons"});
  const more = el("details", {ontoggle: trying(() => show_inside())},
    el("summary", {"data-key": `way-${number}`}, el("strong", {class: "number"}, number), signs), inside);
  const element = el("li", {"data-seqno": number}, more, buttons);
  async function show_inside() {
    replace(inside, more.open && await load_way(mac, entry));
  }
  async function update(changed) {
    entry = changed;
    if (more.open)
      await show_inside();
    if (shown === print(entry))
      return;
    shown = print(entry);
    element.dataset.state = entry.state;
    replace(signs, way_signs(entry));
    refill(buttons, button("Edit again", () => edit(entry.document), {"aria-label": `Edit again: ${number}`}),
      ["pending", "delivered"].includes(entry.state)
        && button("Withdraw", () => withdraw(entry), {class: "risky", "aria-label": `Withdraw: ${number}`}));
  }
  return {element, update};
}

// The documents, newest first.
function make_queue(mac, edit) {
  const list = el("ul", {class: "plain queue"});
  const none = el("p", {class: "empty"}, "Nothing was queued for this switch yet.");
  const place = el("div");
  const pages = el("nav", {class: "pages", "aria-label": "Pages of settings"});
  const items = new Map();
  let from = 0;
  let shows = 0;
  const withdraw = trying(async (entry) => {
    await remove(of_switch(mac, `/settings/${entry.config_seqno}`));
    notice(`Settings ${entry.config_seqno} are withdrawn.`);
    await show();
  });
  function item(number) {
    if (!items.has(number))
      items.set(number, make_item(mac, number, {edit, withdraw}));
    return items.get(number);
  }
  async function show() {
    const turn = ++shows;
    const {total, entries} = await get(`/overview/${mac}/settings`, {from, count: PER_PAGE});
    if (turn !== shows)
      return; // a later answer knows better
    await Promise.all(entries.map((entry) => item(entry.config_seqno).update(entry)));
    refill_changed(list, entries.map((entry) => item(entry.config_seqno).element));
    refill_changed(place, [entries.length ? list : none]);
    const step = (text, to, possible) => button(text, trying(() => { from = to; return show(); }), {disabled: !possible, "data-key": text});
    refill(pages, total > PER_PAGE && [step("Newer", from - PER_PAGE, from > 0),
      `${from + 1} to ${Math.min(total, from + PER_PAGE)} of ${total}`, step("Older", from + PER_PAGE, from + PER_PAGE < total)]);
  }
  return {element: el("section", {class: "panel"}, el("h2", {}, "Queued documents"), place, pages), show};
}

export async function show_settings(place, mac, port_id) {
  const schema = await load_schema("settings");
  let latest = null;
  const send = button("Queue", () => queue_text(editor.text), {class: "main"});
  const editor = make_editor(schema, {label: "Settings document", report: () => latest,
    changed: (text, faults) => { send.disabled = faults.length > 0; }});
  const documents = make_queue(mac, edit);
  const daily = make_daily({queue: (document) => queue_text(pretty(document)), edit,
    changed: () => notice("Nothing was changed in the form.", "calm")});

  const queue_text = trying(async (text) => {
    const faults = faults_in(schema, text);
    if (faults.length)
      return notice(`${faults[0].where}: ${faults[0].text}`, "wrong");
    const {config_seqno} = await post(of_switch(mac, "/settings"), text);
    notice(`Settings ${config_seqno} are queued.`);
    await documents.show();
  });
  function edit(document) {
    editor.set_text(pretty(document));
    editor.focus();
  }
  editor.set_text("{\n  \"system\": {}\n}");
  const content = el("div", {class: "stack"},
    daily.element,
    el("section", {class: "panel"}, el("h2", {}, "Any settings"), editor.element, el("div", {class: "buttons"}, send)),
    documents.element);
  return show_frame(place, mac, "settings", content, async (report) => {
    latest = report;
    daily.show(report, port_id);
    port_id = undefined;
    await documents.show();
  });
}
