// Messages of the connection keeper's channel, which anyone on the way may have written, as the
// body of a reply. A message never leads to a command line other than the fixed ones.
#include <set>
#include <string>

#include "core/keeper.h"
#include "json/json_document.h"
#include "sim/edges/shell.h"
#include "tests/fuzz/support/account.h"
#include "tests/fuzz/support/answers.h"
#include "tests/fuzz/support/document_mutator.h"
#include "tests/fuzz/support/fresh_board.h"
#include "tests/fuzz/support/judgement.h"
#include "tests/fuzz/support/whole_reports.h"
#include "vocabulary.h"

namespace {

const std::set<std::string> programs = {"handler", "ping", "traceroute", "rm"};
constexpr const char* of_reports = "cat /proc/net/arp > /tmp/arpinfo";

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
    if (command_of(line) == of_reports)
        return false;
    return !sim::parse_command(command_of(line), command) ||
           !programs.contains(command.words.front());
}

} // namespace

extern "C" std::size_t
LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
    return mutate_document(action_members, data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    start_agent();
    const std::string input(reinterpret_cast<const char*>(data), size);
    Answers answers(as_answer(input), as_answer("{}"));
    run.board.device.cloud.debug = one_in(8, data, size);
    whole_reports = one_in(500, data, size);
    int failures = 0;
    keeper_turn("http://127.0.0.1:80/router/listen/02:1B:2C:3D:4E:5F", &failures);
    for (const std::string& line : run.board.trace.lines())
        require(!is_foreign_command(line));
    return 0;
}
