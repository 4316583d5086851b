// One switch: the view of its ports.
import {port_buttons, pusher} from "./actions.js";
import {get, of_switch} from "./api.js";
import {el, replace} from "./dom.js";
import {no_report, show_frame} from "./frame.js";
import {make_panel} from "./panel.js";
import {make_details} from "./port_details.js";
import {add_rates, make_table} from "./port_table.js";
import {ports_of, seconds_between} from "./ports.js";

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
