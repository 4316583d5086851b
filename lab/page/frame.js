// What stands above all views of one switch.
import {get, of_switch} from "./api.js";
import {el, refill} from "./dom.js";
import {listen, soon} from "./live.js";
import {refusal_text, state_chip} from "./switches.js";
import {ago, date_time, duration} from "./words.js";

const TABS = [["ports", "Ports"], ["settings", "Settings"], ["actions", "Actions"],
  ["charts", "Charts"], ["reports", "Reports"], ["events", "Events"]];

const fact = (name, value) => value !== undefined && value !== "" && el("div", {}, el("dt", {}, name), el("dd", {}, value));

function head(entry, report, tab) {
  const summary = report?.system?.summary_info ?? {};
  const pending = entry.pending > 0 ? ` → ${entry.pending_seqno} pending` : "";
  return [
    el("div", {class: "title"}, el("h1", {}, summary.device_name || entry.name || entry.mac), state_chip(entry.state)),
    entry.refusal && refusal_text(entry.refusal),
    el("dl", {class: "facts strip"},
      fact("MAC", el("span", {class: "mono"}, entry.mac)), fact("Model", entry.model), fact("Firmware", entry.firmware),
      fact("Address", entry.address), fact("Up for", summary.uptime_seconds !== undefined ? duration(summary.uptime_seconds) : ""),
      fact("Last seen", el("span", {title: date_time(entry.last_seen)}, ago(entry.last_seen))),
      fact("Settings", `${entry.reported_seqno || "–"}${pending}`), fact("Waiting polls", entry.waiting_polls)),
    el("nav", {class: "tabs", "aria-label": "Switch"}, TABS.map(([name, text]) =>
      el("a", {href: `#/switch/${entry.mac}/${name}`, "aria-current": name === tab ? "page" : undefined, "data-key": `tab-${name}`}, text))),
  ];
}

// What all views of a switch share. `update(report, entry)` is called now and whenever the switch
// has sent something; the view is left by the function returned.
export async function show_frame(place, mac, tab, content, update) {
  const above = el("div", {class: "above"});
  place.append(above, content);
  async function refresh() {
    const entry = await get(`/overview/${mac}`);
    const report = entry.reports ? await get(of_switch(mac, "/report")) : null;
    refill(above, head(entry, report, tab));
    document.title = `${entry.name || mac} – Lab cloud`;
    await update(report, entry);
  }
  await refresh();
  const again = soon(() => refresh().catch(() => {}), 400);
  const stop = listen((event) => event.mac === mac && again());
  const clock = setInterval(again, 15000);
  return () => { stop(); clearInterval(clock); again.cancel(); };
}

export const no_report = () => el("p", {class: "empty"}, "This switch has not checked in yet.");
