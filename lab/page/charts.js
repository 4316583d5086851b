// A switch over its last reports: traffic of a port, power, the round trip of a check-in.
import {make_chart} from "./chart.js";
import {el, field, replace} from "./dom.js";
import {load_checkins, load_history, power_series, round_trip_series, traffic_series} from "./history.js";
import {trying} from "./notices.js";
import {ports_of} from "./ports.js";
import {no_report, show_frame} from "./frame.js";
import {scaled} from "./words.js";

export async function show_charts(place, mac) {
  const traffic = make_chart("Traffic", (value) => scaled(value, "bit/s"));
  const power = make_chart("Power drawn and budget", (value) => `${Math.round(value * 10) / 10} W`, "The reports tell no budget.");
  const round_trip = make_chart("Round trip of a check-in", (value) => `${Math.round(value * 10) / 10} ms`, "No check-in yet.");
  const port = el("select");
  let ids = "";
  const show_port = trying(async () => traffic.show(traffic_series(await load_history(mac, port.value))));
  port.addEventListener("change", show_port);
  const content = el("div", {class: "stack"});
  const leave = await show_frame(place, mac, "charts", content, async (report) => {
    if (!report)
      return replace(content, no_report());
    if (!port.isConnected)
      replace(content, el("section", {class: "panel"}, field("Port", port), traffic.element),
        el("section", {class: "panel"}, power.element),
        el("section", {class: "panel"}, round_trip.element,
          el("p", {class: "faint"}, "From the connection to the whole request, as the cloud sees it.")));
    const ports = ports_of(report);
    if (ports.map(({id}) => id).join() !== ids) {
      ids = ports.map(({id}) => id).join();
      const busy = ports.find(({up}) => up)?.id;
      replace(port, ports.map(({id, name}) => el("option", {value: id, selected: id === busy}, name)));
    }
    await show_port();
    power.show(power_series(await load_history(mac)));
    round_trip.show(round_trip_series(await load_checkins(mac)));
  });
  return () => { leave(); [traffic, power, round_trip].forEach((chart) => chart.stop()); };
}
