// The event log as it grows: one stream for the whole page, told to whoever listens.
import {get, parse} from "./api.js";

const listeners = new Set();
let source = null;
let last = 0; // the newest event that was told

export function listen(listener) {
  listeners.add(listener);
  return () => listeners.delete(listener);
}

// A browser has six connections for a host, and this takes one for as long as it is open: so a page
// that nobody sees, in another tab or gone back from, closes it and goes on where it was.
function open(told) {
  source = new EventSource(`/events/stream?after=${last}`);
  source.onopen = () => told(true);
  source.onerror = () => told(false);
  source.onmessage = (message) => {
    const event = parse(message.data);
    last = event.id;
    for (const listener of listeners)
      listener(event);
  };
}

function close() {
  source?.close();
  source = null;
}

// `told(connected)` is called whenever the stream comes or goes.
export async function start(told) {
  ({last} = await get("/events", {after: 999999999999, timeout: 0}));
  const fit = () => document.hidden ? close() : source ?? open(told);
  document.addEventListener("visibilitychange", fit);
  window.addEventListener("pagehide", close);
  window.addEventListener("pageshow", fit);
  fit();
}

// Calls `work` soon, and once for all calls that come meanwhile.
export function soon(work, milliseconds = 250) {
  let timer = 0;
  const later = () => {
    timer ||= setTimeout(() => { timer = 0; work(); }, milliseconds);
  };
  later.cancel = () => clearTimeout(timer);
  return later;
}
