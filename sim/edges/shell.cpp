// Commands of the agent, looked up in a table; an unknown one fails as a shell would have it.
#include "sim/edges/shell.h"

#include <filesystem>
#include <fstream>

#include "sim/edges/network_tools.h"
#include "sim/library/board.h"

namespace sim {

namespace {

constexpr int not_found = 127;
constexpr int syntax_error = 2;

int remove_file(const std::vector<std::string>& words, std::ostream&) {
    if (words.size() != 2)
        return 1;
    std::error_code error;
    return std::filesystem::is_regular_file(board().path(words[1])) &&
                   std::filesystem::remove(board().path(words[1]), error)
               ? 0
               : 1;
}

int reboot_handler() {
    board().reboot();
    return 0;
}

int close_telnet() {
    std::lock_guard lock(board().lock);
    board().device.access.telnet_connections = 0;
    return 0;
}

// The firmware's own helper program.
int handler(const std::vector<std::string>& words, std::ostream&) {
    if (words.size() != 3)
        return 1;
    if (words[1] == "-f" && words[2] == "reboot")
        return reboot_handler();
    if (words[1] == "-c" && words[2] == "telnet")
        return close_telnet();
    return 1;
}

struct Program {
    const char* name;
    int (*run)(const std::vector<std::string>& words, std::ostream& out);
};

const Program programs[] = {
    {"cat", show_file},  {"handler", handler},       {"ping", ping},
    {"rm", remove_file}, {"traceroute", traceroute},
};

int run_program(const Command& command) {
    std::ofstream out;
    if (!command.output.empty())
        out.open(board().path(command.output));
    for (const Program& program : programs)
        if (command.words[0] == program.name)
            return program.run(command.words, out);
    return not_found;
}

// Reads one word at `at`, with its single quotes taken off.
bool parse_word(const std::string& line, std::size_t& at, std::string& word) {
    constexpr const char* special = "\"\\$`;|&<()*?[]{}~#!\n";
    for (; at < line.size() && line[at] != ' ' && line[at] != '>'; ++at) {
        if (line[at] == '\'') {
            std::size_t closing = line.find('\'', at + 1);
            if (closing == std::string::npos)
                return false;
            word += line.substr(at + 1, closing - at - 1);
            at = closing;
        } else if (line[at] == '\\' && at + 1 < line.size() && line[at + 1] == '\'') {
            word += '\'';
            ++at;
        } else if (std::string(special).find(line[at]) != std::string::npos) {
            return false;
        } else {
            word += line[at];
        }
    }
    return true;
}

} // namespace

bool parse_command(const std::string& line, Command& command) {
    std::string text = line;
    if (text.ends_with(" &"))
        text.resize(text.size() - 2);
    bool redirected = false;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == ' ') {
            ++at;
            continue;
        }
        if (text[at] == '>') {
            redirected = true;
            ++at;
            continue;
        }
        std::string word;
        std::size_t start = at;
        if (!parse_word(text, at, word))
            return false;
        bool stream_number =
            at < text.size() && text[at] == '>' && at == start + 1 && (word == "1" || word == "2");
        if (stream_number) {
            command.output = word == "1" ? "" : command.output;
            continue;
        }
        if (redirected)
            command.output = word == "/dev/null" ? "" : word;
        else
            command.words.push_back(word);
        redirected = false;
    }
    return !command.words.empty();
}

int run_command(const std::string& line) {
    Command command;
    return (parse_command(line, command) ? run_program(command) : syntax_error) << 8;
}

} // namespace sim
