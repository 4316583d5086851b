// One switch: what stands above all its views, and the view of its ports.
import {port_buttons, pusher} from "./actions.js";
import {get, of_switch} from "./api.js";
import {el, refill, replace} from "./dom.js";
import {listen, soon} from "./live.js";
import {make_panel} from "./panel.js";
import {make_details} from "./port_details.js";
import {add_rates, make_table} from "./port_table.js";
import {ports_of, seconds_between} from "./ports.js";
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

// The ports of the report before the latest, for rates.
async function load_rates(mac, report, ports) {
  const {entries} = await get(`/overview/${mac}/reports`, {count: 2});
  const earlier = entries[1] && await get(of_switch(mac, `/reports/${entries[1].id}`));
  add_rates(ports, ports_of(earlier), seconds_between(report, earlier));
}

export async function show_ports(place, mac, id) {
  const link_of = (port) => `#/switch/${mac}/ports/${port.id}`;
  const panel = make_panel(link_of, id);
  const below = id ? make_details(mac, id, (port) => el("div", {class: "buttons"},
    port_buttons(pusher(mac), () => port.id, () => port.kind === "copper"),
    el("a", {class: "button", href: `#/switch/${mac}/settings/${port.id}`}, "Set up"),
    el("a", {class: "button", href: `#/switch/${mac}/ports`}, "All ports"))) : make_table(link_of);
  const content = el("div", {class: "stack"});
  const leave = await show_frame(place, mac, "ports", content, async (report) => {
    if (!report?.system?.ports?.length)
      return replace(content, report ? el("p", {class: "empty"}, "The latest report has no ports.") : no_report());
    if (!panel.element.isConnected)
      replace(content, panel.element, below.element);
    const ports = ports_of(report);
    panel.show(ports);
    if (!id)
      await load_rates(mac, report, ports);
    await below.show(id ? report : ports, ports);
  });
  return () => { leave(); panel.stop(); below.stop?.(); };
}
