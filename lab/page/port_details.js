// One port: what it is set to, what is behind it, and how its counters move.
import {make_chart} from "./chart.js";
import {el, replace} from "./dom.js";
import {load_history, rates, traffic_series} from "./history.js";
import {POE_PRIORITIES, POE_STATES, SPEEDS, link_text, list_numbers, neighbour_name} from "./ports.js";
import {scaled} from "./words.js";

export const facts = (pairs) => el("dl", {class: "facts"}, pairs.filter(Boolean).map(([name, value]) =>
  el("div", {}, el("dt", {}, name), el("dd", {}, value))));

const yes = (flag) => flag ? "yes" : "no";

const limit_text = (on, kbps) => on ? scaled(Number(kbps) * 1000, "bit/s") : "none";

const panel = (title, ...content) => el("section", {class: "panel"}, el("h2", {}, title), content);

function state_panel(port) {
  const {raw} = port;
  return panel("State", facts([
    ["Link", link_text(port)],
    ["Configured speed", SPEEDS[raw.link_speed_mode]?.text ?? "another"],
    ["Switched on", yes(raw.enable)],
    ["Flow control", yes(raw.flow_control)],
    raw.isolation !== undefined && ["Isolated", yes(raw.isolation)],
    ["Reset since the last check-in", yes(raw.connkeeper_reset)],
    port.members !== null && ["Members", port.members || "none"],
  ]));
}

const vlan_panel = ({raw}) => panel("VLANs", facts([
  ["Of untagged frames", raw.pvid],
  ["Untagged member of", raw.untagged_vlans || "none"],
  ["Tagged member of", raw.tagged_vlans || "none"],
  raw.voice_vlan && ["Voice VLAN", raw.voice_vlan.enable ? `takes part, ${raw.voice_vlan.cos_mode ? "all frames" : "frames of telephones"}` : "no"],
  raw.qos && ["Class of service", `${raw.qos.cos_value}, incoming marks ${raw.qos.trust ? "count" : "do not count"}`],
]));

function limits_panel({raw}) {
  const poe = raw.poe;
  const limit = raw.rate_limit;
  return panel("Power and limits", facts([
    poe && ["PoE", `${yes(poe.enable)}, ${POE_STATES[poe.status] ?? poe.status}`],
    poe && ["Draw", `${poe.power_draw} W`],
    poe && ["Power limit", poe.power_limit_type === 1 ? `${poe.power_limit_user} W` : "by the device's class"],
    poe && ["Priority", POE_PRIORITIES[poe.priority] ?? poe.priority],
    limit && ["Limit of what it sends", limit_text(limit.enable_tx, limit.tx_limit_kbps)],
    limit && ["Limit of what it receives", limit_text(limit.enable_rx, limit.rx_limit_kbps)],
    !poe && !limit && ["Limits", "none: groups have neither"],
  ]));
}

function neighbours_panel(port) {
  return panel("Neighbours", port.neighbours.length === 0 ? el("p", {class: "faint"}, "Nobody says anything by LLDP.")
    : port.neighbours.map((neighbour) => facts([
      ["Name", neighbour_name(neighbour)],
      ["Chassis", `${neighbour.chassis_id} (${neighbour.chassis_id_subtype})`],
      ["Its port", `${neighbour.remote_id} (${neighbour.port_id_subtype})`],
      ["Says so for", `${neighbour.ttl} s`],
    ])));
}

const devices_panel = (port) => panel(`MAC addresses (${port.macs.length})`, port.macs.length === 0
  ? el("p", {class: "faint"}, "None is learned here.")
  : el("ul", {class: "plain mono wrap"}, port.macs.map((mac) => el("li", {}, mac))));

function entry_text(entry) {
  const parts = Object.entries(entry).filter(([name, value]) =>
    !["acl_name", "sequence", "action"].includes(name) && value !== "" && value !== -1
    && !(name.startsWith("tcp_flag") && value === 0));
  return parts.length ? parts.map(([name, value]) => `${name.replaceAll("_", " ")} ${value}`).join(", ") : "anything";
}

function lists_panel(port, report) {
  const bound = [["MAC", port.raw.acl?.mac, report.acl?.mac_ace], ["IPv4", port.raw.acl?.ipv4, report.acl?.ipv4_ace]]
    .filter(([, name]) => name);
  return panel("Access lists", bound.length === 0 ? el("p", {class: "faint"}, "None is bound to this port.")
    : bound.map(([kind, name, entries]) => [el("h3", {}, `${kind}: ${name}`), el("ol", {class: "plain"},
      (entries ?? []).filter((entry) => entry.acl_name === name).map((entry) =>
        el("li", {}, el("strong", {}, `${entry.sequence} ${entry.action ? "permit" : "deny"} `), entry_text(entry))))]));
}

// Counter, its total, and its rate between the two last reports.
function counters_table(history) {
  const last = history.at(-1)?.statistics;
  if (!last)
    return el("p", {class: "faint"}, "The report has no counters of this port.");
  const rows = Object.entries(last).flatMap(([group, counters]) => Object.keys(counters).map((name) => {
    const value = rates(history.slice(-2), (statistics) => statistics[group]?.[name]).at(-1).value;
    return el("tr", {}, el("th", {scope: "row"}, `${group.replace("_bytes", "")} ${name.replaceAll("_", " ")}`),
      el("td", {class: "number"}, String(counters[name])),
      el("td", {class: "number"}, value === null ? "–" : `${scaled(value)}/s`));
  }));
  return el("div", {class: "scroll", tabindex: 0, role: "region", "aria-label": "Counters"}, el("table", {class: "counters"},
    el("caption", {class: "hidden"}, "Counters"), el("thead", {}, el("tr", {}, el("th", {scope: "col"}, "Counter"),
      el("th", {scope: "col", class: "number"}, "Total"), el("th", {scope: "col", class: "number"}, "Rate"))),
    el("tbody", {}, rows)));
}

export function make_details(mac, id, tools) {
  const place = el("div");
  const counters = el("div");
  const chart = make_chart("Traffic", (value) => scaled(value, "bit/s"));
  return {
    element: el("div", {class: "details"}, place, el("section", {class: "panel"}, el("h2", {}, "Counters"), chart.element, counters)),
    async show(report, ports) {
      const port = ports.find((candidate) => candidate.id === id);
      if (!port)
        return replace(place, el("p", {class: "empty"}, `The latest report has no port ${id}.`));
      replace(place, el("div", {class: "title"}, el("h2", {class: "large"}, port.name), tools(port)),
        el("div", {class: "columns"}, state_panel(port), vlan_panel(port), limits_panel(port),
          neighbours_panel(port), devices_panel(port), lists_panel(port, report)));
      const history = await load_history(mac, id);
      chart.show(traffic_series(history));
      replace(counters, counters_table(history));
    },
    stop: chart.stop,
  };
}
