// Messages of the connection keeper's channel, which anyone on the way may have written. A message
// never leads to a command line other than the fixed ones.
#include <set>

#include "agent_on_board.h"
#include "core/keeper_actions.h"
#include "sim/edges/shell.h"

namespace {

const std::set<std::string> programs = {"handler", "ping", "traceroute", "rm"};

// The command of a trace line, `system("...") = N`.
std::string command_of(const std::string& line) {
    std::size_t begin = line.find('"') + 1;
    return line.substr(begin, line.rfind('"') - begin);
}

// A command line that the shell would take apart in another way than the agent meant, or that names
// a program of the sender's choosing.
bool is_foreign_command(const std::string& line) {
    if (!line.starts_with("system("))
        return false;
    sim::Command command;
    return !sim::parse_command(command_of(line), command) ||
           !programs.contains(command.words.front());
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
        require(!is_foreign_command(line));
    return 0;
}
