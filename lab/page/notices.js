// Short messages at the foot of the page.
import {button, el} from "./dom.js";

export function notice(text, kind = "done") {
  const message = el("div", {class: `notice ${kind}`}, el("span", {}, text));
  message.append(button("×", () => message.remove(), {"aria-label": "Dismiss"}));
  document.getElementById("notices").append(message);
  if (kind === "done")
    setTimeout(() => message.remove(), 6000);
}

// Runs what a button does; what it throws becomes a message.
export const trying = (work) => async (...given) => {
  try {
    return await work(...given);
  } catch (failure) {
    notice(failure.message, "wrong");
  }
};
