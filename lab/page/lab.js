// The lab itself: accounts, its rules, images and counters.
import {get, of_switch, put, remove} from "./api.js";
import {question} from "./actions.js";
import {button, el, field, refill} from "./dom.js";
import {listen, soon} from "./live.js";
import {notice, trying} from "./notices.js";
import {bytes} from "./words.js";

const panel = (title, ...content) => el("section", {class: "panel"}, el("h2", {}, title), content);

function account_form(mac_given) {
  const mac = el("input", {required: true, autocomplete: "off", placeholder: "02:1B:2C:3D:4E:5F", value: mac_given ?? ""});
  const key = el("input", {required: true, autocomplete: "off", maxlength: 115});
  const secret = el("input", {required: true, autocomplete: "off", type: "password", maxlength: 115});
  const register = trying(async () => {
    const {mac: known} = await put(of_switch(encodeURIComponent(mac.value.trim())), {key: key.value, secret: secret.value});
    notice(`${known} is registered.`);
    location.hash = `#/switch/${known}`;
  });
  const forget = trying(async () => {
    await remove(of_switch(encodeURIComponent(mac.value.trim())));
    notice(`${mac.value.trim()} is forgotten.`);
  });
  const form = el("form", {onsubmit: (event) => { event.preventDefault(); register(); }},
    el("div", {class: "grid"}, field("MAC", mac), field("Key", key), field("Secret", secret)),
    el("div", {class: "buttons"}, el("button", {class: "main"}, "Register"),
      button("Forget", () => question(`Everything about ${mac.value.trim() || "the switch"} is deleted: account, reports, settings.`, "Forget the switch", forget), {class: "risky"})));
  return panel("Register or forget a switch", form);
}

const RULES = [
  ["window", "Seconds that a timestamp may lie off", "0: any"],
  ["clock_offset", "Seconds by which the lab's clock is wrong", "may be negative"],
  ["redeliver_seconds", "Seconds between two deliveries", "of one document, at least"],
  ["redeliver_tries", "Deliveries until a document counts as refused", "0: no limit"],
  ["poll_seconds", "Seconds that a long-poll is held", ""],
];

async function rules_form() {
  const rules = await get("/config");
  const inputs = RULES.map(([name]) => el("input", {type: "number", step: "any", required: true, value: rules[name], name}));
  const save = trying(async () => {
    await put("/config", Object.fromEntries(inputs.map((input) => [input.name, Number(input.value)])));
    notice("The lab goes by these rules until it ends.");
  });
  return panel("Rules", el("form", {onsubmit: (event) => { event.preventDefault(); save(); }},
    el("div", {class: "grid"}, RULES.map(([, text, hint], index) => field(text, inputs[index], hint))),
    el("div", {class: "buttons"}, el("button", {class: "main"}, "Set"))));
}

async function images_panel() {
  const place = el("div");
  const {http} = await get("/ports");
  const file = el("input", {type: "file"});
  const drop = trying(async (name) => {
    await remove(`/firmware/${name}`);
    await show();
  });
  const upload = trying(async () => {
    const [image] = file.files;
    if (!image)
      throw new Error("Choose a file first.");
    await put(`/firmware/${encodeURIComponent(image.name)}`, image);
    notice(`${image.name} is there.`);
    await show();
  });
  async function show() {
    const images = await get("/firmware");
    refill(place, images.length === 0 ? el("p", {class: "faint"}, "There is no image.")
      : el("ul", {class: "plain log"}, images.map(({name, bytes: size}) => el("li", {},
        el("strong", {}, name), ` ${bytes(size)} `, el("span", {class: "mono"}, `http://localhost:${http}/firmware/${name}`), " ",
        button("Delete", () => drop(name), {class: "risky", "aria-label": `Delete: ${name}`})))));
  }
  await show();
  return panel("Firmware images", place, field("Image", file), el("div", {class: "buttons"}, button("Upload", upload)));
}

const pairs = (entries) => el("table", {class: "counters"}, el("caption", {class: "hidden"}, "Counters"),
  el("tbody", {}, entries.map(([name, value]) => el("tr", {}, el("th", {scope: "row"}, name), el("td", {class: "number"}, String(value))))));

export async function show_lab(place, mac) {
  const counters = el("div");
  const ports = await get("/ports");
  const show = async () => {
    const stats = await get("/stats");
    refill(counters, pairs([["waiting polls", stats.waiting_polls], ...Object.entries(stats.counters)]));
  };
  place.append(el("h1", {}, "Lab"), el("div", {class: "columns"},
    el("div", {class: "stack"}, account_form(mac), await rules_form(), await images_panel()),
    el("div", {class: "stack"}, panel("Where it listens", pairs([["check-in", ports.https.join(", ")], ["plain HTTP", ports.http],
      ["keeper", ports.keeper.join(", ")], ["admin", ports.admin], ["trust directory", ports.ca_dir]])),
    panel("Counted", counters))));
  await show();
  const again = soon(() => show().catch(() => {}), 1000);
  const stop = listen(again);
  return () => { stop(); again.cancel(); };
}
