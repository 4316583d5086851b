// The ports of a report as a person thinks of them.

// Speeds by the wire's code: a class has a colour and a shape of its own.
export const SPEEDS = [
  {text: "negotiated", short: "auto", kind: "none"},
  {text: "1000 Mbit/s full", short: "1G", kind: "g1"},
  {text: "100 Mbit/s full", short: "100M", kind: "m100"},
  {text: "100 Mbit/s half", short: "100M½", kind: "m100"},
  {text: "10 Mbit/s full", short: "10M", kind: "m10"},
  {text: "10 Mbit/s half", short: "10M½", kind: "m10"},
  {text: "10 Gbit/s full", short: "10G", kind: "g10"},
  {text: "another speed", short: "?", kind: "none"},
];

// What is drawn in a port, in the order of the legend. The paths are in a box of 12 by 12.
export const SIGNS = {
  g10: {text: "10 Gbit/s", path: "M6 0l6 6-6 6-6-6z"},
  g1: {text: "1 Gbit/s", path: "M6 .5a5.5 5.5 0 1 1-.01 0z"},
  m100: {text: "100 Mbit/s", path: "M6 0l6 11.5h-12z"},
  m10: {text: "10 Mbit/s", path: "M.5 .5h11v11h-11z"},
  none: {text: "no link", path: "M1 5h10v2h-10z"},
  off: {text: "switched off", path: "M2 0l4 4 4-4 2 2-4 4 4 4-2 2-4-4-4 4-2-2 4-4-4-4z"},
};

export const POE_STATES = ["off", "searching", "delivering", "denied"];
export const POE_PRIORITIES = ["low", "medium", "high", "critical"];

const kind_of = (id) => id.startsWith("trunk") ? "group" : id.startsWith("F") ? "fibre" : "copper";

function model(raw, number, neighbours, members) {
  const up = raw.status === 1;
  const kind = kind_of(raw.id);
  const speed = SPEEDS[up ? raw.link_speed_neg : 0] ?? SPEEDS[7];
  return {
    raw, kind, number, up, speed, members, neighbours,
    id: raw.id,
    name: kind === "group" ? `Group ${raw.id.slice(5)}` : `Port ${raw.id}`,
    mark: kind === "group" ? `T${raw.id.slice(5)}` : raw.id,
    enabled: raw.enable,
    sign: !raw.enable ? "off" : up ? speed.kind : "none",
    power: raw.poe?.power_draw ?? null,
    reset: raw.connkeeper_reset,
    vlan: raw.pvid,
    macs: Array.isArray(raw.connected_device_mac_list) ? raw.connected_device_mac_list : [],
  };
}

const elements = (list) => Array.isArray(list) ? list.filter((item) => item !== null && typeof item === "object") : [];

// Whatever came in the report's place: what is no port is left out.
export function ports_of(report) {
  const remote = elements(report?.lldp?.remote);
  const groups = elements(report?.system?.link_aggregation);
  return elements(report?.system?.ports).map((raw, index) => typeof raw.id === "string" && model(raw, index + 1,
    remote.filter((neighbour) => neighbour.port === index + 1),
    raw.id.startsWith("trunk")
      ? groups.find((group) => group.id === Number(raw.id.slice(5)))?.members ?? ""
      : null)).filter(Boolean);
}

export const neighbour_name = (neighbour) =>
  neighbour.system_name || neighbour.chassis_id || "unnamed";

export const link_text = (port) =>
  !port.enabled ? "switched off" : port.up ? port.speed.text : "no link";

// All of a port in a sentence, for a tooltip and for who cannot see the panel.
export function port_text(port) {
  const words = [`${port.name}: ${link_text(port)}`];
  if (port.power)
    words.push(`${port.power} W`);
  words.push(`VLAN ${port.vlan}`);
  if (port.members)
    words.push(`members ${port.members}`);
  if (port.neighbours.length)
    words.push(`neighbour ${port.neighbours.map(neighbour_name).join(", ")}`);
  if (port.reset)
    words.push("was reset");
  return words.join(", ");
}

// "1,3-5" -> [1, 3, 4, 5]
export function list_numbers(text) {
  const numbers = [];
  for (const run of (text || "").split(",").filter(Boolean)) {
    const [first, last = first] = run.split("-").map(Number);
    for (let number = first; number <= last && numbers.length < 5000; number++)
      numbers.push(number);
  }
  return numbers;
}

// What a counter grew by in a second of the switch's own time; null when that cannot be told:
// without an earlier report, and after a restart.
export function rate(now, before, seconds) {
  if (now === undefined || before === undefined || !(seconds > 0) || now < before)
    return null;
  return Number(BigInt(now) - BigInt(before)) / seconds;
}

export const seconds_between = (report, earlier) =>
  (report?.system?.summary_info?.uptime_seconds ?? 0) - (earlier?.system?.summary_info?.uptime_seconds ?? Infinity);
