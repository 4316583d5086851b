// Times, sizes and states in words.

export function ago(text) {
  if (!text)
    return "never";
  const seconds = Math.max(0, Math.round((Date.now() - Date.parse(text)) / 1000));
  if (seconds < 60)
    return `${seconds} s ago`;
  if (seconds < 3600)
    return `${Math.floor(seconds / 60)} min ago`;
  if (seconds < 86400)
    return `${Math.floor(seconds / 3600)} h ago`;
  return `${Math.floor(seconds / 86400)} days ago`;
}

export const clock_time = (text) => new Date(text).toLocaleTimeString("en-GB");

export const date_time = (text) => text ? new Date(text).toLocaleString("en-GB") : "never";

export function duration(seconds) {
  const days = Math.floor(seconds / 86400);
  const rest = new Date((seconds % 86400) * 1000).toISOString().slice(11, 19);
  return days ? `${days} d ${rest}` : rest;
}

// 1234567 -> "1.23 M"; the unit is put behind it.
export function scaled(value, unit = "") {
  const prefixes = ["", "k", "M", "G", "T", "P"];
  let number = Number(value);
  let step = 0;
  while (Math.abs(number) >= 1000 && step < prefixes.length - 1) {
    number /= 1000;
    step++;
  }
  const digits = step === 0 && Number.isInteger(number) ? 0 : Math.abs(number) < 10 ? 2 : Math.abs(number) < 100 ? 1 : 0;
  return `${number.toFixed(digits)} ${prefixes[step]}${unit}`.trim();
}

export const bytes = (count) => scaled(count, "B");

export const plural = (count, one, many = `${one}s`) => `${count} ${count === 1 ? one : many}`;

// State of a switch: its word, and the sign that goes with it.
export const STATES = {
  ok: {word: "On the cloud", sign: "✓"},
  silent: {word: "Silent", sign: "…"},
  refused: {word: "Refused", sign: "✕"},
  new: {word: "Never seen", sign: "–"},
};

// What the lab wants of a check-in, by the code with which it refuses another.
const EXPECTED = {
  "malformed": "a request head of lines \"Name: value\", each ended by CR LF",
  "scheme": "a check-in over https",
  "method": "POST",
  "path": "/cloud-switch/AA:BB:CC:DD:EE:FF/checkin, or GET /router/listen/MAC on the keeper channel",
  "encoding": "the body as it is, with neither Transfer-Encoding nor Content-Encoding",
  "header-missing": "Content-Length, Content-Type, Authorization and Signature",
  "header-duplicate": "each of the four headers once",
  "header-order": "Content-Length, Content-Type, Authorization, Signature, in this order",
  "content-length": "the body's length in bytes",
  "content-type": "application/json",
  "authorization": "key=KEY,timestamp=SECONDS,nonce=32 lower-case hexadecimal digits",
  "unknown-switch": "the MAC of a switch that is registered here",
  "key": "the key with which the switch is registered",
  "timestamp": "a timestamp within the window around the cloud's time",
  "signature": "HMAC-SHA256, keyed with the account's secret, over the Authorization value, the path and the body",
  "nonce": "a nonce that was not there before with this key and timestamp",
  "body": "a JSON object",
};

export const expected_by = (code) => EXPECTED[code] ?? "a request as the wire has it";
