// Cutting transfers short.
#include "sim/instruments/patience.h"

namespace sim {

void Patience::cut(const std::string& url_prefix, long milliseconds) {
    std::lock_guard lock(mutex_);
    prefix_ = url_prefix;
    cut_ = milliseconds;
}

void Patience::restore() {
    std::lock_guard lock(mutex_);
    cut_.reset();
}

std::optional<long> Patience::milliseconds(const std::string& url) const {
    std::lock_guard lock(mutex_);
    return url.starts_with(prefix_) ? cut_ : std::nullopt;
}

void Patience::wait_out(const std::string& url, double seconds, Clock& clock) const {
    if (clock.is_virtual() && milliseconds(url))
        clock.restart(clock.running() + seconds);
}

Patience& patience() {
    static Patience whole;
    return whole;
}

} // namespace sim
