// The "lldp" section of settings documents; see lldp_config.h.
#include "sections/lldp_config.h"

#include "base/errors.h"
#include "platform/lldp.h"
#include "sections/lldp_timers.h"

namespace {

enum {
    LOWEST_INTERVAL = 5,
    LOWEST_MULTIPLIER = 2,
    LOWEST_TRANSMIT_DELAY = 1,
    LONGEST_TIME_TO_LIVE = 65535, // seconds
};

int timers_read(LldpTimers* now) {
    if (int code = sal_lldp_enable_get(&now->enable))
        return code;
    if (int code = sal_lldp_holdtime_get(&now->multiplier))
        return code;
    if (int code = sal_lldp_tx_interval_get(&now->interval))
        return code;
    if (int code = sal_lldp_reinit_delay_get(&now->reinit_delay))
        return code;
    return sal_lldp_tx_delay_get(&now->transmit_delay);
}

// A number wider than the value that it is for loses its upper bits.
template <class Value> void take(const cJSON* settings, const char* key, Value* value) {
    int found;
    int number = getJsonIntValueForKey(settings, key, &found);
    if (found)
        *value = static_cast<Value>(number);
}

void timers_take(const cJSON* settings, LldpTimers* wanted) {
    int found;
    int enable = getJsonBoolValueForKey(settings, "enable", &found);
    if (found)
        wanted->enable = enable != JSON_FALSE;
    take(settings, "transmission_interval", &wanted->interval);
    take(settings, "holdtime_multiplier", &wanted->multiplier);
    take(settings, "reinitialization_delay", &wanted->reinit_delay);
    take(settings, "transmit_delay", &wanted->transmit_delay);
}

bool within(uint32_t value, uint32_t low, uint32_t high) { return value >= low && value <= high; }

bool go_together(const LldpTimers& timers) {
    return within(timers.interval, LOWEST_INTERVAL, 32767) &&
           timers.multiplier * timers.interval <= LONGEST_TIME_TO_LIVE &&
           timers.transmit_delay <= timers.interval >> 2 &&
           within(timers.multiplier, LOWEST_MULTIPLIER, 10) && within(timers.reinit_delay, 1, 10) &&
           within(timers.transmit_delay, LOWEST_TRANSMIT_DELAY, 8192);
}

// From the lowest values no step meets the platform's own checks of one timer against another.
int timers_lower() {
    if (int code = sal_lldp_tx_delay_set(LOWEST_TRANSMIT_DELAY))
        return code;
    if (int code = sal_lldp_tx_interval_set(LOWEST_INTERVAL))
        return code;
    return sal_lldp_holdtime_set(LOWEST_MULTIPLIER);
}

int timers_write(const LldpTimers& wanted) {
    if (int code = timers_lower())
        return code;
    if (int code = sal_lldp_enable_set(wanted.enable))
        return code;
    if (int code = sal_lldp_disableAction_set(0))
        return code;
    if (int code = sal_lldp_holdtime_set(wanted.multiplier))
        return code;
    if (int code = sal_lldp_tx_interval_set(wanted.interval))
        return code;
    if (int code = sal_lldp_reinit_delay_set(wanted.reinit_delay))
        return code;
    return sal_lldp_tx_delay_set(wanted.transmit_delay);
}

} // namespace

int vxc_lldp_set(const cJSON* lldp) {
    LldpTimers timers = {};
    if (int code = timers_read(&timers))
        return record_error(code);
    const cJSON* settings = getJsonObjectForKey(lldp, "settings");
    if (!settings)
        return 0;
    timers_take(settings, &timers);
    if (!go_together(timers))
        return record_error(ERROR_REFUSED);
    if (int code = timers_write(timers))
        return record_error(code);
    return 0;
}
