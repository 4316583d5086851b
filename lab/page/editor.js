// A text field for a document: what the schema offers while typing, and what it refuses.
import {button, el, fresh_id, replace} from "./dom.js";
import {complete} from "./completion.js";
import {line_of, place_of, read_json} from "./json_text.js";
import {faults_of} from "./schema.js";

// The faults of a text: [{at, line, where, text}].
export function faults_in(root, text) {
  const {value, places, error} = read_json(text);
  if (error)
    return [{at: error.at, line: line_of(text, error.at), where: "", text: error.text}];
  return [...faults_of(root, root, value)].map(({way, text: what}) => {
    const [at] = place_of(places, way);
    return {at, line: line_of(text, at), where: way.map((step) => typeof step === "number" ? step + 1 : step).join(" › "), text: what};
  });
}

// `changed(text, faults)` is called after every change.
export function make_editor(root, {label, report, changed}) {
  const id = fresh_id("editor");
  const area = el("textarea", {id, class: "mono code", rows: 14, spellcheck: "false", autocomplete: "off", autocapitalize: "off",
    wrap: "off", "aria-describedby": `${id}-help ${id}-faults`, "aria-autocomplete": "list", "aria-controls": `${id}-list`});
  const gutter = el("pre", {class: "gutter mono", "aria-hidden": "true"});
  const list = el("ul", {id: `${id}-list`, class: "offers", role: "listbox", "aria-label": "Suggestions", hidden: true});
  const faults_place = el("div", {id: `${id}-faults`, class: "faults"});
  const status = el("span", {class: "hidden", role: "status"});
  let offer = null;
  let chosen = 0;
  let faults = [];

  function close() {
    offer = null;
    list.hidden = true;
    area.removeAttribute("aria-activedescendant");
  }
  function stand_at_cursor() {
    const before = area.value.slice(0, offer.from).split("\n");
    const style = getComputedStyle(area);
    const line = parseFloat(style.lineHeight);
    list.style.top = `${before.length * line + parseFloat(style.paddingTop) - area.scrollTop + 2}px`;
    list.style.left = `calc(${Math.min(before.at(-1).length, 40)}ch + ${gutter.offsetWidth + 8 - Math.min(area.scrollLeft, 200)}px)`;
  }
  function show_offers() {
    replace(list, offer.options.slice(0, 60).map((option, index) => el("li", {id: `${id}-${index}`, role: "option",
      "aria-selected": String(index === chosen), onmousedown: (event) => { event.preventDefault(); chosen = index; accept(); }},
      el("span", {}, option.shown), " ", el("span", {class: "faint"}, option.about))));
    list.hidden = false;
    stand_at_cursor();
    area.setAttribute("aria-activedescendant", `${id}-${chosen}`);
    list.children[chosen]?.scrollIntoView({block: "nearest"});
  }
  function open(asked) {
    const cursor = area.selectionStart;
    offer = area.selectionEnd === cursor ? complete(root, area.value, cursor, report()) : null;
    const needless = offer?.options.length === 1 && offer.options[0].text === area.value.slice(offer.from, offer.to);
    if (!offer || (needless && !asked))
      return close();
    chosen = 0;
    replace(status, `${offer.options.length} suggestions`);
    show_offers();
  }
  function accept() {
    const [before, after = ""] = offer.options[chosen].text.split("|");
    const {from, to} = offer;
    close();
    area.focus();
    area.setSelectionRange(from, to);
    // Typed as if by hand, so that it can be undone.
    if (!document.execCommand("insertText", false, before + after))
      area.setRangeText(before + after, from, to, "end");
    area.setSelectionRange(from + before.length, from + before.length);
    check();
    if (offer_again(before))
      open(false);
  }
  const offer_again = (before) => /[:{["]\s*$/.test(before);

  function jump(fault) {
    area.focus();
    area.setSelectionRange(fault.at, fault.at);
  }
  function check() {
    faults = area.value.trim() ? faults_in(root, area.value) : [{at: 0, line: 1, where: "", text: "the document is empty"}];
    const wrong = new Set(faults.map(({line}) => line));
    replace(gutter, Array.from({length: area.value.split("\n").length}, (_, index) =>
      el("span", {class: wrong.has(index + 1) ? "wrong" : undefined}, `${wrong.has(index + 1) ? "●" : ""}${index + 1}\n`)));
    replace(faults_place, faults.length === 0 ? el("p", {class: "right"}, "✓ The schema has nothing against it.")
      : el("ul", {class: "plain"}, faults.slice(0, 8).map((fault) => el("li", {class: "wrong"},
        button(`Line ${fault.line}`, () => jump(fault), {class: "link"}), ` ${fault.where ? `${fault.where}: ` : ""}${fault.text}`)),
        faults.length > 8 && el("li", {class: "faint"}, `and ${faults.length - 8} more`)));
    changed(area.value, faults);
  }
  // Enter keeps the indentation of the line, and opens a pair of brackets.
  function new_line(event) {
    const at = area.selectionStart;
    const [, , indent] = /(^|\n)([ \t]*)[^\n]*$/.exec(area.value.slice(0, at));
    const inside = "{[".includes(area.value[at - 1]) && "}]".includes(area.value[at]);
    if (!indent && !inside)
      return;
    event.preventDefault();
    document.execCommand("insertText", false, inside ? `\n${indent}  \n${indent}` : `\n${indent}`);
    if (inside)
      area.setSelectionRange(at + indent.length + 3, at + indent.length + 3);
  }
  area.addEventListener("keydown", (event) => {
    const step = {ArrowDown: 1, ArrowUp: -1}[event.key];
    if (event.key === " " && event.ctrlKey) {
      event.preventDefault();
      open(true);
    } else if (!offer) {
      if (event.key === "Enter")
        new_line(event);
    } else if (step) {
      event.preventDefault();
      chosen = (chosen + step + offer.options.length) % Math.min(60, offer.options.length);
      show_offers();
    } else if (event.key === "Enter" || event.key === "Tab") {
      event.preventDefault();
      accept();
    } else if (event.key === "Escape") {
      event.preventDefault();
      close();
    }
  });
  area.addEventListener("input", (event) => {
    check();
    /^insertText/.test(event.inputType ?? "") && /["\w:[ {]/.test(event.data ?? "") || offer ? open(false) : close();
  });
  area.addEventListener("blur", close);
  area.addEventListener("scroll", () => { gutter.scrollTop = area.scrollTop; close(); });

  return {
    element: el("div", {class: "editor"}, el("label", {for: id}, label),
      el("p", {class: "hint", id: `${id}-help`}, "Ctrl and space show what may stand here; arrows, Enter and Escape choose."),
      el("div", {class: "code-place"}, gutter, area, list), faults_place, status),
    get text() { return area.value; },
    get faults() { return faults; },
    set_text(text) { area.value = text; close(); check(); },
    focus() { area.focus(); },
  };
}
