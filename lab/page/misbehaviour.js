// What the lab does wrong on purpose: a banner on every view while it does, and the view that
// switches it on and off.
import {get, post, remove} from "./api.js";
import {button, el, field, refill, replace, select} from "./dom.js";
import {listen, soon} from "./live.js";
import {notice, trying} from "./notices.js";
import {plural} from "./words.js";

const MODES = [
  ["refuse", "Nobody listens"],
  ["reset", "Connections are reset once the peer has sent something"],
  ["silent", "Connections are held and nothing is said"],
  ["status", "The reply is an error, and nothing is processed"],
  ["redirect", "The reply is a redirection, and nothing is processed"],
  ["truncate", "The connection ends in the middle of the reply"],
  ["short-length", "The reply is longer than it is announced"],
  ["endless", "The reply never ends"],
  ["endless-head", "The reply's header lines never end"],
  ["bomb", "The reply unpacks to 16 MiB"],
  ["slow", "The reply trickles"],
  ["corrupt", "One byte of the reply is altered"],
  ["expired", "The certificate has expired"],
  ["unknown-ca", "The certificate is from an unknown authority"],
  ["wrong-name", "The certificate is for another name"],
];
const LISTENERS = [["checkin", "Check-in, over TLS"], ["plain", "Plain HTTP: time and firmware"], ["keeper", "Connection keeper"]];
const ABOUT_CERTIFICATES = ["expired", "unknown-ca", "wrong-name"];

export function describe(entry) {
  const where = LISTENERS.find(([name]) => name === entry.listener)?.[1] ?? entry.listener;
  const how = entry.mode === "status" ? ` (${entry.status})` : entry.mode === "slow" ? ` (${entry.piece} bytes every ${entry.delay_ms} ms)` : "";
  const till = entry.count ? `, for ${plural(entry.count, "more connection")}` : ", until it is switched off";
  return `${MODES.find(([mode]) => mode === entry.mode)?.[1] ?? entry.mode}${how}: ${where}${entry.port ? `, port ${entry.port}` : ""}${till}`;
}

const behave = trying(async () => {
  await remove("/misbehave");
  notice("The lab behaves again.");
  changed();
});

const watchers = new Set();
const changed = () => watchers.forEach((watcher) => watcher());

export function start_banner(place) {
  const show = async () => {
    const list = await get("/misbehave").catch(() => []);
    document.body.classList.toggle("misbehaving", list.length > 0);
    refill(place, list.length > 0 && el("section", {class: "banner", "aria-label": "Misbehaviour"},
      el("strong", {}, el("span", {"aria-hidden": "true"}, "⚠ "), "The lab misbehaves on purpose."),
      el("ul", {}, list.map((entry) => el("li", {}, describe(entry)))),
      button("Behave again", behave, {"data-key": "behave"})));
  };
  watchers.add(show);
  const later = soon(show, 200);
  listen((event) => event.kind === "misbehaviour" && later());
  setInterval(later, 5000);
  show();
}

const number = (value, min, max) => el("input", {type: "number", value, min, max});

export async function show_misbehaviour(place) {
  const mode = select(MODES.map(([name, text]) => [name, `${name}: ${text.toLowerCase()}`]), "status");
  const listener = select(LISTENERS, "checkin");
  const port = el("select");
  const count = number("", 1, 1000000);
  const status = number(503, 201, 599);
  const piece = number(1, 1, 1000000);
  const delay = number(50, 0, 10000);
  const details = el("div", {class: "grid"});
  const list = el("div");
  const ports = await get("/ports");
  const ports_of = {checkin: ports.https, keeper: ports.keeper, plain: [ports.http, ...ports.https]};

  function fit() {
    const certificate = ABOUT_CERTIFICATES.includes(mode.value);
    if (certificate)
      listener.value = "checkin";
    listener.disabled = certificate;
    replace(port, el("option", {value: 0}, "all of them"), ports_of[listener.value].map((one) => el("option", {value: one}, one)));
    replace(details, mode.value !== "refuse" && field("For how many connections", count, "empty: until it is switched off"),
      mode.value === "status" && field("Status", status),
      mode.value === "slow" && [field("Bytes at a time", piece), field("Milliseconds between", delay)]);
  }
  mode.addEventListener("change", fit);
  listener.addEventListener("change", fit);
  fit();
  const begin = trying(async () => {
    const order = {mode: mode.value, listener: listener.value};
    if (Number(port.value))
      order.port = Number(port.value);
    if (mode.value !== "refuse" && count.value)
      order.count = Number(count.value);
    if (mode.value === "status")
      order.status = Number(status.value);
    if (mode.value === "slow")
      Object.assign(order, {piece: Number(piece.value), delay_ms: Number(delay.value)});
    await post("/misbehave", order);
    changed();
  });
  async function show() {
    const entries = await get("/misbehave");
    refill(list, entries.length === 0 ? el("p", {class: "right"}, "✓ The lab behaves.")
      : [el("ul", {class: "plain log wrong"}, entries.map((entry) => el("li", {}, describe(entry)))),
        el("div", {class: "buttons"}, button("Behave again", behave, {class: "main", "data-key": "behave-here"}))]);
  }
  place.append(el("h1", {}, "Misbehaviour"), el("p", {}, "What a cloud can do wrong, the lab does when it is told to. Switches find out how they bear it."),
    el("div", {class: "columns"},
      el("form", {class: "panel", onsubmit: (event) => { event.preventDefault(); begin(); }}, el("h2", {}, "Switch on"),
        el("div", {class: "grid"}, field("What goes wrong", mode), field("Where", listener), field("Port", port)), details,
        el("div", {class: "buttons"}, el("button", {class: "main risky-main"}, "Misbehave"))),
      el("section", {class: "panel"}, el("h2", {}, "Now"), list)));
  const watcher = () => show().catch(() => {});
  watchers.add(watcher);
  const stop = listen((event) => event.kind === "misbehaviour" && watcher());
  await show();
  return () => { watchers.delete(watcher); stop(); };
}
