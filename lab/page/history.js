// What the last reports of a switch tell over time, as series for charts.
import {get} from "./api.js";
import {rate} from "./ports.js";

export const COUNT = 50;

// Oldest first.
export const load_history = async (mac, port) =>
  (await get(`/overview/${mac}/history`, {port: port ?? "", count: COUNT})).reverse();

export const load_checkins = async (mac) =>
  (await get(`/overview/${mac}/checkins`, {count: COUNT})).reverse();

// A rate for each report but the first, in units a second of the switch's own time.
export const rates = (history, counter) => history.map((point, index) => {
  const before = history[index - 1];
  return {time: point.time, value: before && point.statistics && before.statistics
    ? rate(counter(point.statistics), counter(before.statistics), point.uptime - before.uptime) : null};
});

const in_bits = (points) => points.map(({time, value}) => ({time, value: value === null ? null : value * 8}));

export const traffic_series = (history) => [
  {name: "received", points: in_bits(rates(history, (statistics) => statistics.rx_bytes.all))},
  {name: "sent", points: in_bits(rates(history, (statistics) => statistics.tx_bytes.all))},
];

const known = (value) => value === undefined || value === null ? null : Number(value);

export const power_series = (history) => [
  {name: "drawn", points: history.map(({time, budget, available}) => ({time,
    value: known(budget) === null || known(available) === null ? null : Math.round((budget - available) * 10) / 10}))},
  {name: "budget", points: history.map(({time, budget}) => ({time, value: known(budget)}))},
];

export const round_trip_series = (checkins) => [
  {name: "round trip", points: checkins.map(({time, milliseconds}) => ({time, value: known(milliseconds)}))},
];
