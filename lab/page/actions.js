// What a switch is told to do at once, and what its tests found.
import {get, of_switch, post, print} from "./api.js";
import {draw_cable} from "./cable.js";
import {button, el, field, refill, replace, select} from "./dom.js";
import {notice, trying} from "./notices.js";
import {ports_of} from "./ports.js";
import {show_frame} from "./frame.js";
import {ago, clock_time} from "./words.js";

const PER_PAGE = 10;

// A question before what cannot be taken back. `done` is called when it is answered with yes.
export function question(text, yes, done) {
  const dialog = el("dialog", {"aria-label": text}, el("p", {}, text), el("div", {class: "buttons"},
    button(yes, () => { dialog.close(); done(); }, {class: "main risky-main"}),
    button("Cancel", () => dialog.close(), {autofocus: true})));
  dialog.addEventListener("close", () => dialog.remove());
  document.body.append(dialog);
  dialog.showModal();
}

const text_lines = (text) => text.split("\\r\\n").join("\n").trim();

const RESULTS = {
  cable_test: draw_cable,
  ping_ipv4: (text) => el("div", {}, el("h3", {}, "Ping"), el("pre", {class: "mono output", tabindex: 0, role: "region", "aria-label": "Ping"}, text_lines(text))),
  traceroute: (text) => el("div", {}, el("h3", {}, "Way to a host"), el("pre", {class: "mono output", tabindex: 0, role: "region", "aria-label": "Way to a host"}, text_lines(text))),
};

const result = ({time, report, diagnostic}) => el("li", {"data-report": report},
  el("p", {class: "faint"}, `Found ${ago(time)}, at ${clock_time(time)}`),
  Object.entries(diagnostic).map(([kind, value]) => RESULTS[kind]?.(value)));

const action_row = ({id, state, document, time}) => el("li", {},
  el("span", {class: `chip ${state}`}, state === "answered" ? "✓ sent" : "… waiting"), " ",
  el("span", {class: "mono"}, print(document)), " ", el("span", {class: "faint number"}, `${id}, ${ago(time)}`));

const whole = (value, least, most) => el("input", {type: "number", value, min: least, max: most, required: true});

function test_forms(push) {
  const host = el("input", {required: true, autocomplete: "off", placeholder: "192.168.1.1"});
  const count = whole(4, 1, 5);
  const interval = whole(1, 1, 5);
  const size = whole(56, 8, 5120);
  const target = el("input", {required: true, autocomplete: "off", placeholder: "www.example.com"});
  const hops = whole(30, 2, 255);
  const form = (title, fields, text, make) => el("form", {class: "panel",
    onsubmit: (event) => { event.preventDefault(); push(make()); }},
    el("h2", {}, title), el("div", {class: "grid"}, fields), el("div", {class: "buttons"}, el("button", {class: "main"}, text)));
  return [
    form("Ping", [field("Host to ping", host), field("Requests", count), field("Seconds between", interval), field("Bytes", size)], "Ping",
      () => ({action: "ping_ipv4", host: host.value.trim(), count: Number(count.value), interval: Number(interval.value), size: Number(size.value)})),
    form("Way to a host", [field("Host to trace", target), field("Hops at most", hops)], "Trace the way",
      () => ({action: "traceroute", host: target.value.trim(), hops: Number(hops.value)})),
  ];
}

// Buttons for one port.
export function port_buttons(push, port_id, is_copper) {
  return [button("Reset the port", () => question("The port goes down and up again, and its power with it.", "Reset the port",
    () => push({action: "port_reset", port: port_id()}))),
  button("Clear its counters", () => push({action: "counter_reset", port: port_id()})),
  is_copper() && button("Test the cable", () => push({action: "cable_test", port: port_id()}))];
}

export const pusher = (mac, done = () => {}) => trying(async (action) => {
  const {id} = await post(of_switch(mac, "/actions"), action);
  notice(`Action ${id}, ${action.action}, waits for the switch.`);
  await done();
});

// Any action as JSON, for what has no button.
function free_form(push) {
  const area = el("textarea", {class: "mono", rows: 4, spellcheck: "false"}, "{\"action\": \"api_test\"}");
  const send = trying(async () => {
    let action;
    try {
      action = JSON.parse(area.value);
    } catch {
      throw new Error("The action is not JSON.");
    }
    await push(action);
  });
  return el("form", {class: "panel", onsubmit: (event) => { event.preventDefault(); send(); }},
    el("details", {}, el("summary", {}, "Any other action"), field("Action as JSON", area),
      el("div", {class: "buttons"}, el("button", {}, "Push"))));
}

export async function show_actions(place, mac) {
  let ports = [];
  const chosen = select([], "");
  const of_port = el("div", {class: "buttons"});
  const results = el("div");
  const log = el("div");
  const push = pusher(mac, () => show_log());
  const show_port_buttons = () => refill(of_port, port_buttons(push, () => chosen.value,
    () => ports.find(({id}) => id === chosen.value)?.kind === "copper"));
  chosen.addEventListener("change", show_port_buttons);

  async function show_log() {
    const [actions, diagnostics] = await Promise.all([
      get(`/overview/${mac}/actions`, {count: PER_PAGE}), get(`/overview/${mac}/diagnostics`)]);
    refill(log, actions.entries.length ? el("ul", {class: "plain log"}, actions.entries.map(action_row))
      : el("p", {class: "faint"}, "Nothing was pushed yet."),
      actions.total > PER_PAGE && el("p", {class: "faint"}, `The newest ${PER_PAGE} of ${actions.total}.`));
    refill(results, diagnostics.length ? el("ul", {class: "plain results"}, diagnostics.slice(0, PER_PAGE).map(result))
      : el("p", {class: "faint"}, "No test has told anything yet."));
  }
  const content = el("div", {class: "stack"},
    el("div", {class: "columns"},
      el("section", {class: "panel"}, el("h2", {}, "The switch"), el("div", {class: "buttons"},
        button("Check in now", () => push({action: "checkin"}), {class: "main"}),
        button("Restart the agent", () => question("The agent ends, and the switch starts it afresh.", "Restart the agent", () => push({action: "restart_vxcloud"}))),
        button("Reboot", () => question("The switch restarts, and all its links go down meanwhile.", "Reboot the switch", () => push({action: "reboot"})), {class: "risky"}))),
      el("section", {class: "panel"}, el("h2", {}, "A port"), field("Port", chosen), of_port),
      test_forms(push)),
    free_form(push),
    el("div", {class: "columns"}, el("section", {class: "panel"}, el("h2", {}, "What tests found"), results),
      el("section", {class: "panel"}, el("h2", {}, "Pushed"), log)));
  return show_frame(place, mac, "actions", content, async (report) => {
    const fresh = ports_of(report);
    if (fresh.map(({id}) => id).join() !== ports.map(({id}) => id).join()) {
      replace(chosen, fresh.map(({id, name}) => el("option", {value: id}, name)));
      ports = fresh;
      show_port_buttons();
    }
    await show_log();
  });
}
