// The switch's shell, as far as the agent uses it: simulated commands on the board's files. No text
// of the agent ever reaches a shell of the workstation.
#pragma once

#include <string>
#include <vector>

namespace sim {

// Runs a command line; returns what system() would: 0, or the exit status times 256.
int run_command(const std::string& line);

// One command, its words unquoted, and where its output goes (empty: nowhere).
struct Command {
    std::vector<std::string> words;
    std::string output;
};

// Splits a line as a shell does: blanks, single quotes, "> file", "2> file", a closing "&".
// Anything a shell would act upon beyond that is a syntax error: false.
bool parse_command(const std::string& line, Command& command);

} // namespace sim
