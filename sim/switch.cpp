// The simulated switch as scenario and configuration; see switch.h.
#include "sim/switch.h"

namespace sim {

void Switch::hardware(Fields& f) {
    int ports = logical_ports();
    f.integer("logical_ports", ports, 11, 96);
    f.boolean("driver_loaded", driver_loaded);
    f.object("system", [&](Fields& inner) { system.hardware(inner); });
}

void Switch::config(Fields& f) {
    f.object("system", [&](Fields& inner) { system.config(inner); });
}

void Switch::running(Fields& f, Clock& clock) {
    auto seconds = static_cast<std::int64_t>(clock.running());
    f.integer("seconds", seconds, 0, INT64_MAX);
    if (f.reading())
        clock.restart(static_cast<double>(seconds));
}

} // namespace sim
