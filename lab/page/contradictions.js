// What the report after a delivery says against the settings that were delivered.
import {print} from "./api.js";
import {list_numbers} from "./ports.js";

// What is an order and not a state, or is never reported.
const ORDERS = [
  /^system\/cloud\/(key|secret|config_seqno|timeout|connect_timeout|checkin_type)$/,
  /^system\/(reboot|firmware\/(upgrade_partition|upgrade_url|factory_reset))$/,
  /^system\/ports\/[^/]*\/reset$/,
  /\/(method|action)$/,
];
const NUMBER_LISTS = /\/(tagged_vlans|untagged_vlans|members|source_tx_port|source_rx_port)$/;
const ANOTHER_NAME = {"system/cloud/checkin_url": "checkin_host"};

// By what an element of a list is known, for the lists in which order means nothing.
const KEYS = [
  [/^system\/(ports|port_mirror|link_aggregation)$|^qos\/(cos|dscp)$|^system\/igmp\/vlan$|^vlan\/voice\/oui$/, ["id"]],
  [/^system\/snmp\/communities$|^acl\/(mac|ipv4)_acl$/, ["name"]],
  [/^system\/snmp\/trap$/, ["host", "version", "notify_type"]],
  [/^acl\/(mac|ipv4)_ace$/, ["acl_name", "sequence"]],
];

// The order that takes an element away.
const removes = (way, element) => way.startsWith("system/snmp") ? element.action === 2
  : /^acl\/|^vlan\/voice\/oui/.test(way) && element.method === 0;

const same_key = (keys, a, b) => keys.every((key) => String(a?.[key]) === String(b?.[key]));

function equal(way, wanted, reported) {
  if (NUMBER_LISTS.test(way) && typeof wanted === "string" && typeof reported === "string")
    return list_numbers(wanted).join() === list_numbers(reported).join();
  if (typeof wanted === "string" && typeof reported === "string")
    return wanted.replaceAll("-", ":").toLowerCase() === reported.replaceAll("-", ":").toLowerCase();
  return String(wanted) === String(reported) && typeof wanted === typeof reported;
}

const is_order = (way) => ORDERS.some((pattern) => pattern.test(way))
  && !(/\/action$/.test(way) && /_ace\//.test(way));

function find_member(report, name) {
  if (report === null || typeof report !== "object")
    return undefined;
  const found = Object.keys(report).find((key) => key.toLowerCase() === name.toLowerCase());
  return found === undefined ? undefined : report[found];
}

// A later element for the same thing takes the place of an earlier one.
function compare_list(way, wanted, reported, into) {
  const keys = KEYS.find(([pattern]) => pattern.test(way))?.[1];
  if (!keys || !Array.isArray(reported))
    return;
  for (const element of wanted) {
    const name = `${way}/${keys.map((key) => element?.[key]).join(" ")}`;
    const found = reported.find((other) => same_key(keys, element, other));
    if (removes(way, element))
      into.set(name, found ? [name, "removed", "still there"] : null);
    else if (!found)
      into.set(name, element?.mode === 0 ? null : [name, "there", "not there"]);
    else {
      into.set(name, null);
      compare(name, element, found, into);
    }
  }
}

// A limit that is off is reported as 0, and 0 leaves a limit as it is.
const untold_limit = (way, wanted, holder) => /\/(tx|rx)_limit_kbps$/.test(way)
  && (wanted === 0 || holder?.[way.includes("/tx_") ? "enable_tx" : "enable_rx"] === false);

function compare(way, wanted, reported, into) {
  for (const [name, value] of Object.entries(wanted)) {
    const here = way ? `${way}/${name}` : name;
    const found = find_member(reported, ANOTHER_NAME[here] ?? name);
    if (found === undefined || is_order(here) || untold_limit(here, value, reported))
      continue; // a member that is missing is no news
    if (Array.isArray(value))
      compare_list(here, value, found, into);
    else if (value !== null && typeof value === "object")
      compare(here, value, found, into);
    else
      into.set(here, equal(here, value, found) ? null : [here, print(value), print(found)]);
  }
}

// [[way, wanted, reported]]
export function contradictions(document, report) {
  const found = new Map();
  compare("", document, report, found);
  return [...found.values()].filter(Boolean).map(([way, wanted, reported]) => [way.replaceAll("/", " › "), wanted, reported]);
}
