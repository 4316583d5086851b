// Reading the command line; what does not fit together is refused.
#include "judge/cloud/options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <fstream>

#include "version/version.h"

namespace judge::cloud {

const char usage[] =
    "usage: cloud_judge --checkin HOST --mac MAC --key KEY --secret SECRET [OPTION]...\n"
    "Holds a cloud against the wire: what a good switch sends must be served, and what a bad one\n"
    "sends must be refused. A HOST is a name or an address, with a port if need be.\n"
    "\n"
    "  --checkin HOST      host of the check-in service\n"
    "  --fallback HOST     its fallback host; without one it is not judged\n"
    "  --time HOST         host of the time service [the fallback host, or else the check-in "
    "host]\n"
    "  --keeper HOST       host of the connection keeper; without one it is not judged\n"
    "  --mac MAC           a switch that the cloud knows, AA:BB:CC:DD:EE:FF, of the judge's own\n"
    "  --key KEY           its account's key\n"
    "  --secret SECRET     its account's secret\n"
    "  --secret-file FILE  the secret in a file\n"
    "  --ca FILE           trusted certificates, a file or a folder [those of this machine]\n"
    "  --report FILE       a switch's report to send [one of the judge's own]\n"
    "  --seqno N           the number that the switch begins with [1]\n"
    "  --window SECONDS    what a timestamp may lie off either way, to be asked for exactly\n"
    "\n"
    "What must be queued on the cloud's side. Each command is run by the shell with the document "
    "on\n"
    "its standard input and the switch's MAC in $MAC:\n"
    "  --queue-settings COMMAND  queues a settings document\n"
    "  --push-action COMMAND     has an action pushed by the connection keeper\n"
    "  --ask               a person is asked to do it, and says when it is done\n"
    "\n"
    "  --wait SECONDS      until what was queued must come [10]\n"
    "  --redeliver SECONDS until what was not acknowledged must come again [30]\n"
    "  --hold SECONDS      that a long-poll must be held [5]\n"
    "  --timeout SECONDS   for each answer [30]\n"
    "  --patience SECONDS  until a sender that falls silent should be ended; not asked otherwise\n"
    "\n"
    "  --family NAME       only this family; may be repeated\n"
    "  --strict            what should be otherwise convicts, too\n"
    "  --json FILE         the report as JSON, with every check\n"
    "  --junit FILE        the report as JUnit XML\n"
    "  --summary FILE      the report as a text for a ticket\n"
    "  --verbose           each check as it is made\n"
    "  --version\n"
    "  --help\n"
    "\n"
    "Exits with 0 when nothing was found, 1 when something was, 2 for a wrong command line, 3 "
    "when\n"
    "it was interrupted.\n";

namespace {

using Text = const std::string&;

void parse_host_option(Host& host, Text option, Text text) {
    auto parsed = parse_host(text);
    if (!parsed)
        throw WrongCommandLine(option + " takes HOST or HOST:PORT, not \"" + text + "\"");
    host = std::move(*parsed);
}

template <class Number> void parse_number(Number& number, Text option, Text text, Number least) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !(number >= least) ||
        !(number <= Number(2147483647)))
        throw WrongCommandLine(option + " does not take \"" + text + "\"");
}

bool is_mac(const std::string& text) {
    if (text.size() != 17)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (i % 3 == 2 ? c != ':' : !std::isxdigit(c) || std::islower(c))
            return false;
    }
    return true;
}

void read_secret(Options& options, Text option, Text file) {
    std::ifstream in(file);
    if (!std::getline(in, options.account.secret))
        throw WrongCommandLine(option + ": " + file + " cannot be read");
}

struct ValueOption {
    const char* name;
    void (*take)(Options&, Text option, Text value);
};

constexpr ValueOption value_options[] = {
    {"--checkin", [](Options& o, Text n, Text v) { parse_host_option(o.checkin, n, v); }},
    {"--fallback", [](Options& o, Text n, Text v) { parse_host_option(o.fallback, n, v); }},
    {"--time", [](Options& o, Text n, Text v) { parse_host_option(o.time, n, v); }},
    {"--keeper", [](Options& o, Text n, Text v) { parse_host_option(o.keeper, n, v); }},
    {"--mac", [](Options& o, Text, Text v) { o.account.mac = v; }},
    {"--key", [](Options& o, Text, Text v) { o.account.key = v; }},
    {"--secret", [](Options& o, Text, Text v) { o.account.secret = v; }},
    {"--secret-file", read_secret},
    {"--ca", [](Options& o, Text, Text v) { o.ca = v; }},
    {"--report", [](Options& o, Text, Text v) { o.report = v; }},
    {"--seqno", [](Options& o, Text n, Text v) { parse_number<std::int64_t>(o.number, n, v, 0); }},
    {"--window", [](Options& o, Text n, Text v) { parse_number<std::int64_t>(o.window, n, v, 1); }},
    {"--queue-settings", [](Options& o, Text, Text v) { o.queue_settings = v; }},
    {"--push-action", [](Options& o, Text, Text v) { o.push_action = v; }},
    {"--wait", [](Options& o, Text n, Text v) { parse_number(o.wait, n, v, 0.1); }},
    {"--redeliver", [](Options& o, Text n, Text v) { parse_number(o.redeliver, n, v, 0.1); }},
    {"--hold", [](Options& o, Text n, Text v) { parse_number(o.hold, n, v, 0.1); }},
    {"--timeout", [](Options& o, Text n, Text v) { parse_number(o.timeout, n, v, 1.0); }},
    {"--patience", [](Options& o, Text n, Text v) { parse_number(o.patience, n, v, 1.0); }},
    {"--family", [](Options& o, Text, Text v) { o.families.push_back(v); }},
    {"--json", [](Options& o, Text, Text v) { o.json = v; }},
    {"--junit", [](Options& o, Text, Text v) { o.junit = v; }},
    {"--summary", [](Options& o, Text, Text v) { o.summary = v; }},
};

struct Flag {
    const char* name;
    bool Options::*member;
};

constexpr Flag flags[] = {
    {"--ask", &Options::ask},
    {"--strict", &Options::strict},
    {"--verbose", &Options::verbose},
};

bool take_flag(Options& options, const std::string& name) {
    for (const Flag& flag : flags)
        if (name == flag.name)
            return options.*flag.member = true;
    return false;
}

void take_value(Options& options, const std::string& name, const char* value) {
    for (const ValueOption& option : value_options)
        if (name == option.name) {
            if (!value)
                throw WrongCommandLine(name + " takes a value");
            return option.take(options, name, value);
        }
    throw WrongCommandLine("there is no option " + name);
}

void check(const Options& options, const std::vector<std::string>& families) {
    if (options.checkin.name.empty())
        throw WrongCommandLine("--checkin is missing");
    if (!is_mac(options.account.mac))
        throw WrongCommandLine("--mac takes AA:BB:CC:DD:EE:FF");
    if (options.account.key.empty() || options.account.secret.empty())
        throw WrongCommandLine("--key and --secret, or --secret-file, are missing");
    for (const std::string& family : options.families)
        if (std::find(families.begin(), families.end(), family) == families.end())
            throw WrongCommandLine("there is no family " + family);
}

// As the shell takes it, for texts in which there is no quotation mark of that kind.
std::string quoted(const std::string& text) {
    return text.find_first_of(" $\\") == std::string::npos ? text : "'" + text + "'";
}

// Where the time is asked unless that was said.
const Host& time_host(const Options& options) {
    if (!options.time.name.empty())
        return options.time;
    return options.fallback.name.empty() ? options.checkin : options.fallback;
}

} // namespace

bool Options::wants(const std::string& family) const {
    return families.empty() ||
           std::find(families.begin(), families.end(), family) != families.end();
}

bool parse_options(
    int count, char** arguments, const std::vector<std::string>& families, Options& options) {
    for (int i = 1; i < count; ++i) {
        const std::string name = arguments[i];
        if (name == "--help" || name == "--version") {
            std::fputs(name == "--help" ? usage : "cloud_judge " VX_VERSION "\n", stdout);
            return false;
        }
        options.command += (i == 1 ? "cloud_judge " : " ") + name;
        if (take_flag(options, name))
            continue;
        take_value(options, name, arguments[++i]);
        options.command += " " + (name == "--secret" ? "..." : quoted(arguments[i]));
    }
    check(options, families);
    options.time = time_host(options);
    return true;
}

} // namespace judge::cloud
