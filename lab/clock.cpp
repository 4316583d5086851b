// The workstation's clock.
#include "lab/clock.h"

#include <chrono>
#include <ctime>

namespace lab {

std::int64_t wall_milliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

std::int64_t wall_seconds() { return wall_milliseconds() / 1000; }

std::string utc_text(std::int64_t seconds) {
    const std::time_t moment = seconds;
    std::tm parts{};
    gmtime_r(&moment, &parts);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text, length};
}

} // namespace lab
