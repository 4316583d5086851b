// The event log as it grows: one stream for the whole page, told to whoever listens.
import {get, parse} from "./api.js";

const listeners = new Set();
let source = null;

export function listen(listener) {
  listeners.add(listener);
  return () => listeners.delete(listener);
}

// `told(connected)` is called whenever the stream comes or goes.
export async function start(told) {
  const {last} = await get("/events", {after: 999999999999, timeout: 0});
  source = new EventSource(`/events/stream?after=${last}`);
  source.onopen = () => told(true);
  source.onerror = () => told(false);
  source.onmessage = (message) => {
    const event = parse(message.data);
    for (const listener of listeners)
      listener(event);
  };
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
