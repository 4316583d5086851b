// The admin interface as functions.

export class Refused extends Error {
  constructor(status, reason) {
    super(reason);
    this.status = status;
  }
}

// Counters go beyond what a number of JavaScript keeps apart; such a one becomes a BigInt.
export function parse(text) {
  return JSON.parse(text, (key, value, context) =>
    typeof value === "number" && Number.isInteger(value) && !Number.isSafeInteger(value)
      && /^-?\d+$/.test(context?.source ?? "") ? BigInt(context.source) : value);
}

async function ask(method, path, body) {
  let answer;
  try {
    answer = await fetch(path, {method, body, cache: "no-store"});
  } catch {
    throw new Refused(0, "The lab cloud does not answer.");
  }
  const text = await answer.text();
  if (answer.ok)
    return text ? parse(text) : null;
  let reason = text;
  try {
    reason = parse(text).error ?? text;
  } catch { /* not every refusal is JSON */ }
  throw new Refused(answer.status, reason || `The lab cloud answered ${answer.status}.`);
}

// The text of a document, a BigInt as the number that it stands for.
export const print = (document, indent) => JSON.stringify(document, (key, value) =>
  typeof value === "bigint" ? JSON.rawJSON?.(String(value)) ?? String(value) : value, indent);

const json = (document) => typeof document === "string" ? document : print(document);

export const get = (path, query) => ask("GET", query ? `${path}?${new URLSearchParams(query)}` : path);
export const post = (path, document) => ask("POST", path, json(document));
export const put = (path, document) => ask("PUT", path, document instanceof Blob ? document : json(document));
export const remove = (path) => ask("DELETE", path);

export const of_switch = (mac, rest = "") => `/switches/${mac}${rest}`;
