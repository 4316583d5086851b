// Which view stands for which address, and what stands around every view.
import {show_actions} from "./actions.js";
import {show_charts} from "./charts.js";
import {el, replace} from "./dom.js";
import {show_events, show_switch_events} from "./events.js";
import {show_lab} from "./lab.js";
import * as live from "./live.js";
import {show_misbehaviour, start_banner} from "./misbehaviour.js";
import {notice} from "./notices.js";
import {show_reports} from "./reports.js";
import {show_settings} from "./settings.js";
import {show_ports} from "./switch.js";
import {show_switches} from "./switches.js";

// A view fills the element that it is given and returns what to do when it is left.
const VIEWS = [
  [/^#?\/?$/, show_switches],
  [/^#\/switch\/([0-9A-F:]{17})(?:\/ports)?$/i, show_ports],
  [/^#\/switch\/([0-9A-F:]{17})\/ports\/(\w+)$/i, show_ports],
  [/^#\/switch\/([0-9A-F:]{17})\/settings(?:\/(\w+))?$/i, show_settings],
  [/^#\/switch\/([0-9A-F:]{17})\/actions$/i, show_actions],
  [/^#\/switch\/([0-9A-F:]{17})\/charts$/i, show_charts],
  [/^#\/switch\/([0-9A-F:]{17})\/reports$/i, show_reports],
  [/^#\/switch\/([0-9A-F:]{17})\/events$/i, show_switch_events],
  [/^#\/events$/, show_events],
  [/^#\/misbehaviour$/, show_misbehaviour],
  [/^#\/lab$/, show_lab],
  [/^#\/lab\/register(?:\/([0-9A-F:]{17}))?$/i, show_lab],
];

const main = document.getElementById("main");
let leave = null;
let place = null;

function mark_navigation(hash) {
  for (const link of document.querySelectorAll("header nav a")) {
    const target = link.getAttribute("href");
    const here = target === "#/" ? /^#?\/?(switch\/|$)/.test(hash) : hash.startsWith(target);
    here ? link.setAttribute("aria-current", "page") : link.removeAttribute("aria-current");
  }
}

async function show() {
  const hash = decodeURIComponent(location.hash);
  if (hash === "#main")
    return;
  const view = VIEWS.find(([pattern]) => pattern.test(hash));
  leave?.();
  leave = null;
  mark_navigation(hash);
  const content = el("div", {class: "view"});
  place = content;
  replace(main, content);
  document.title = "Lab cloud";
  window.scrollTo(0, 0);
  if (!view)
    return replace(content, el("h1", {}, "There is nothing here"), el("p", {}, el("a", {href: "#/"}, "All switches")));
  try {
    const left = await view[1](content, ...view[0].exec(hash).slice(1));
    place === content ? leave = left : left?.();
  } catch (failure) {
    replace(content, el("h1", {}, "This cannot be shown"), el("p", {class: "wrong"}, failure.message));
  }
}

function tell_connection(connected) {
  const sign = document.getElementById("live");
  sign.className = connected ? "live on" : "live off";
  sign.textContent = connected ? "live" : "no connection";
}

window.addEventListener("hashchange", show);
window.addEventListener("unhandledrejection", (event) => notice(event.reason?.message ?? "Something failed", "wrong"));
start_banner(document.getElementById("banner"));
live.start(tell_connection).catch(() => tell_connection(false));
show();
