// Command-line parsing: a table of options and what each does with its value.
#include "lab/options.h"

#include <charconv>
#include <stdexcept>

#include "lab/mac.h"

namespace lab {

const char usage[] =
    "usage: lab_cloud --data DIR [options]\n"
    "  --https-port P          check-in over TLS, and the time over plain HTTP (repeatable)\n"
    "  --http-port P           time and firmware images over plain HTTP\n"
    "  --keeper-port P         connection keeper over plain HTTP (repeatable)\n"
    "  --admin-port P          admin interface\n"
    "  --account MAC,KEY,SECRET  register a switch (repeatable)\n"
    "  --window S              seconds a timestamp may lie off, 0: any (300)\n"
    "  --clock-offset S        seconds by which the lab's time differs (0)\n"
    "  --redeliver-seconds S   least time between two deliveries of one document (10)\n"
    "  --redeliver-tries N     deliveries before a document counts as refused, 0: no limit (10)\n"
    "  --poll-seconds S        a long-poll without an action is answered after this (1500)\n"
    "  --first-checkin-seconds S  who polls that long and never checked in is told of (60)\n"
    "  --quiet                 print no events\n"
    "  --version\n"
    "  --help\n"
    "Every port is on 127.0.0.1 and any free one unless given.\n";

namespace {

template <typename Number>
Number parse_number(const std::string& option, const std::string& text, Number least, Number most) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !(number >= least) ||
        !(number <= most))
        throw std::invalid_argument(option + " does not take \"" + text + "\"");
    return number;
}

constexpr std::int64_t hundred_years = std::int64_t{100} * 366 * 24 * 60 * 60;
constexpr double one_year = 366.0 * 24 * 60 * 60;

int parse_port(const std::string& option, const std::string& text) {
    return parse_number<int>(option, text, 0, 65535);
}

void add_account(Options& options, const std::string& option, const std::string& text) {
    const std::size_t first = text.find(',');
    const std::size_t second = first == std::string::npos ? first : text.find(',', first + 1);
    const auto mac = canonical_mac(text.substr(0, first));
    if (!mac || second == std::string::npos || second == first + 1 || second + 1 == text.size())
        throw std::invalid_argument(option + " takes MAC,KEY,SECRET");
    options.accounts.push_back(
        {*mac, {text.substr(first + 1, second - first - 1), text.substr(second + 1)}});
}

struct ValueOption {
    const char* name;
    void (*take)(Options&, const std::string& option, const std::string& value);
};

using Text = const std::string&;

constexpr ValueOption value_options[] = {
    {"--data", [](Options& o, Text, Text v) { o.data = v; }},
    {"--https-port", [](Options& o, Text n, Text v) { o.https_ports.push_back(parse_port(n, v)); }},
    {"--http-port", [](Options& o, Text n, Text v) { o.http_port = parse_port(n, v); }},
    {"--keeper-port",
     [](Options& o, Text n, Text v) { o.keeper_ports.push_back(parse_port(n, v)); }},
    {"--admin-port", [](Options& o, Text n, Text v) { o.admin_port = parse_port(n, v); }},
    {"--account", add_account},
    {"--window",
     [](Options& o, Text n, Text v) {
         o.policy.window = parse_number<std::int64_t>(n, v, 0, hundred_years);
     }},
    {"--clock-offset",
     [](Options& o, Text n, Text v) {
         o.policy.clock_offset = parse_number<std::int64_t>(n, v, -hundred_years, hundred_years);
     }},
    {"--redeliver-seconds",
     [](Options& o, Text n, Text v) {
         o.policy.redeliver_seconds = parse_number<double>(n, v, 0, one_year);
     }},
    {"--redeliver-tries",
     [](Options& o, Text n, Text v) {
         o.policy.redeliver_tries = parse_number<std::int64_t>(n, v, 0, 1000000);
     }},
    {"--poll-seconds",
     [](Options& o, Text n, Text v) {
         o.policy.poll_seconds = parse_number<double>(n, v, 0, one_year);
     }},
    {"--first-checkin-seconds",
     [](Options& o, Text n, Text v) {
         o.policy.first_checkin_seconds = parse_number<double>(n, v, 0, one_year);
     }},
};

const ValueOption* find_option(const std::string& name) {
    for (const ValueOption& option : value_options)
        if (name == option.name)
            return &option;
    return nullptr;
}

void fill_defaults(Options& options) {
    if (options.data.empty())
        throw std::invalid_argument("--data is missing");
    if (options.https_ports.empty())
        options.https_ports.push_back(0);
    if (options.keeper_ports.empty())
        options.keeper_ports.push_back(0);
}

} // namespace

Options parse_options(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); i++) {
        const std::string& name = arguments[i];
        if (name == "--help" || name == "-h") {
            options.help = true;
            return options;
        }
        if (name == "--version") {
            options.version = true;
            return options;
        }
        if (name == "--quiet") {
            options.quiet = true;
            continue;
        }
        const ValueOption* option = find_option(name);
        if (!option)
            throw std::invalid_argument("there is no option " + name);
        if (++i == arguments.size())
            throw std::invalid_argument(name + " takes a value");
        option->take(options, name, arguments[i]);
    }
    fill_defaults(options);
    return options;
}

} // namespace lab
