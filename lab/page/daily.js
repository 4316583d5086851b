// Forms for what is done daily. Each makes a settings document of what was changed in it.
import {button, el, field, fresh_id, replace, select} from "./dom.js";
import {POE_PRIORITIES, SPEEDS, ports_of} from "./ports.js";

const checkbox = (text, checked) => {
  const box = el("input", {type: "checkbox", id: fresh_id("box"), checked});
  return {box, element: el("div", {class: "field inline"}, box, el("label", {for: box.id}, text))};
};

// {element, read(): what was changed}, for one port.
function port_controls(port) {
  const {raw} = port;
  const on = checkbox("Switched on", raw.enable);
  const speed = select(SPEEDS.slice(0, 7).map(({text}, code) => [code, text]), raw.link_speed_mode);
  const pvid = el("input", {type: "number", min: 1, max: 4094, value: raw.pvid});
  const untagged = el("input", {value: raw.untagged_vlans});
  const tagged = el("input", {value: raw.tagged_vlans});
  const poe_on = raw.poe && checkbox("PoE", raw.poe.enable);
  const priority = raw.poe && select(POE_PRIORITIES.map((text, code) => [code, text]), raw.poe.priority);
  const limit = raw.poe && el("input", {type: "number", min: 0, max: 30, placeholder: "by class",
    value: raw.poe.power_limit_type === 1 ? raw.poe.power_limit_user : ""});

  function read_poe() {
    const poe = {};
    if (poe_on.box.checked !== raw.poe.enable)
      poe.enable = poe_on.box.checked;
    if (Number(priority.value) !== raw.poe.priority)
      poe.priority = Number(priority.value);
    if (limit.value === "" && raw.poe.power_limit_type === 1)
      poe.power_limit_type = 0;
    if (limit.value !== "" && (raw.poe.power_limit_type !== 1 || Number(limit.value) !== raw.poe.power_limit_user))
      Object.assign(poe, {power_limit_type: 1, power_limit_user: Number(limit.value)});
    return poe;
  }
  // A PVID must exist, and the lists before it make VLANs: it goes into an element behind them.
  function read() {
    const change = {};
    if (on.box.checked !== raw.enable)
      change.enable = on.box.checked;
    if (Number(speed.value) !== raw.link_speed_mode)
      change.link_speed_mode = Number(speed.value);
    for (const [name, input] of [["tagged_vlans", tagged], ["untagged_vlans", untagged]])
      if (input.value.replaceAll(" ", "") !== raw[name])
        change[name] = input.value.replaceAll(" ", "");
    const poe = raw.poe ? read_poe() : {};
    if (Object.keys(poe).length)
      change.poe = poe;
    const elements = Object.keys(change).length ? [{id: port.id, ...change}] : [];
    if (Number(pvid.value) !== raw.pvid)
      elements.push({id: port.id, pvid: Number(pvid.value)});
    return elements;
  }
  const element = el("div", {class: "grid"}, on.element, field("Speed", speed), field("VLAN of untagged frames", pvid),
    field("Untagged VLANs", untagged, "such as 1,10-12"), field("Tagged VLANs", tagged, "such as 20,30"),
    raw.poe && [poe_on.element, field("PoE priority", priority), field("PoE limit, watts", limit)]);
  return {element, read};
}

// `queue(document)` and `edit(document)` do what their buttons say.
export function make_daily({queue, edit, changed}) {
  const name = el("input", {autocomplete: "off"});
  const ports = el("select");
  const place = el("div");
  let list = [];
  let controls = null;
  let said_name = "";

  function show_port() {
    const port = list.find(({id}) => id === ports.value);
    controls = port && port_controls(port);
    replace(place, controls?.element);
  }
  ports.addEventListener("change", show_port);

  const name_document = () => ({system: {summary_info: {device_name: name.value.trim()}}});
  function port_document() {
    const elements = controls?.read() ?? [];
    return elements.length ? {system: {ports: elements}} : null;
  }
  const buttons = (make) => el("div", {class: "buttons"},
    button("Queue", () => { const document = make(); document ? queue(document) : changed(); }, {class: "main"}),
    button("Put into the editor", () => { const document = make(); document ? edit(document) : changed(); }));
  const element = el("div", {class: "columns"},
    el("form", {class: "panel", onsubmit: (event) => { event.preventDefault(); queue(name_document()); }},
      el("h2", {}, "Name"), field("Name of the switch", name, "letters, digits and \"-\", a letter first"), buttons(name_document)),
    el("form", {class: "panel", onsubmit: (event) => { event.preventDefault(); const document = port_document(); document ? queue(document) : changed(); }},
      el("h2", {}, "A port"), field("Port", ports), place, buttons(port_document)));
  return {
    element,
    // New values come into the form only while nobody is at it.
    show(report, port_id) {
      if (element.contains(document.activeElement) && list.length)
        return;
      const summary = report?.system?.summary_info?.device_name ?? "";
      if (name.value === said_name)
        name.value = summary;
      said_name = summary;
      const chosen = port_id ?? ports.value;
      list = ports_of(report);
      if (controls?.read().length)
        return;
      replace(ports, list.map((port) => el("option", {value: port.id, selected: port.id === chosen}, port.name)));
      show_port();
    },
  };
}
