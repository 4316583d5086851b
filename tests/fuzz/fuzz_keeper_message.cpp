// Messages of the connection keeper's channel, which anyone on the way may have written. A message
// never leads to a command line other than the fixed ones.
#include "agent_on_board.h"
#include "core/keeper_actions.h"

namespace {

// The words of a command line that the simulated shell refused or did not find would be the
// sender's: both give another status than 0 or 1.
bool is_refused_command(const std::string& line) {
    return line.starts_with("system(") && !line.ends_with(" = 0") && !line.ends_with(" = 256");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sim::Board& board = fresh_board();
    std::string input(reinterpret_cast<const char*>(data), size);
    cJSON* message = parseJsonString(input.c_str());
    // A check-in would go out to the network.
    const char* action = getJsonStringValueForKey(message, "action");
    if (action && std::string(action) != "checkin" && std::string(action) != "api_test")
        perform_keeper_action(message);
    deleteJsonObject(message);
    for (const std::string& line : board.trace.lines())
        require(!is_refused_command(line));
    return 0;
}
