// Replies of the time API, which comes without TLS from whoever answers. No reply may do harm, and
// a time that was read once is read again from its own text.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "sim/library/board.h"
#include "tests/support/temp_folder.h"
#include "transport/clock_sync.h"

namespace {

// The time API's text for a moment, "" for years that have more digits.
std::string reply_for(std::time_t moment) {
    std::tm parts{};
    if (!gmtime_r(&moment, &parts) || parts.tm_year < -1900 || parts.tm_year > 8099)
        return "";
    char text[64];
    std::size_t length =
        std::strftime(text, sizeof text, "{\"time\": \"%Y-%m-%dT%H:%M:%SZ\"}", &parts);
    return std::string(text, length);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("TZ", "UTC", 1);
    tzset();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static TempFolder folder;
    static sim::Board board(folder.path());
    std::string input(reinterpret_cast<const char*>(data), size);
    std::time_t moment = parse_time_reply(input.c_str());
    std::string again = moment == -1 ? "" : reply_for(moment);
    if (!again.empty() && parse_time_reply(again.c_str()) != moment)
        std::abort();
    board.trace.clear();
    return 0;
}
