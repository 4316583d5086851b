// Reading the command line; what does not fit together is refused with the usage.
#include "judge/options.h"

#include <getopt.h>

#include <algorithm>
#include <cstdlib>

#include "judge/family.h"
#include "version/version.h"

namespace judge {

namespace {

constexpr const char* usage =
    "usage: platform_judge [OPTION]...\n"
    "Holds a platform library against its contract, call by call.\n"
    "\n"
    "  --change            set everything that can be put back, and put it back\n"
    "  --restart-test      what is kept over a restart: three runs, with a restart of the switch\n"
    "                      after the first and the second\n"
    "  --restore           only put back what an interrupted run has left\n"
    "\n"
    "What cannot be put back, each with its own option:\n"
    "  --unread-settings   settings that no call reads: fibre link, 10-gigabit media, HTTPS, LLDP\n"
    "  --poe-reset         power of each PoE port off and on, 10-gigabit modules to their start\n"
    "  --clear-counters    traffic counters to 0\n"
    "  --cable-test        a cable test at each copper port, which interrupts its link\n"
    "  --services          restart SNMP and inetd\n"
    "  --static-macs       take the static MAC addresses out of their table\n"
    "  --firmware URL      fetch an image, and write it to the partition that is not selected\n"
    "  --factory-defaults  delete the startup configuration\n"
    "  --kill              end the agent and start it afresh\n"
    "  --reboot            reboot the switch, after everything else\n"
    "\n"
    "  --family NAME       only this family (a header of platform/, or driver); may be repeated\n"
    "  --journal FILE      what is changed and not put back yet [platform_judge.journal]\n"
    "  --timeout SECONDS   how long a call may take [30]\n"
    "  --json FILE         the report as JSON\n"
    "  --junit FILE        the report as JUnit XML\n"
    "  --summary FILE      the report as a text for a ticket\n"
    "  --verbose           each step as it is judged\n"
    "  --version\n"
    "  --help\n"
    "\n"
    "Exits with 0 when nothing was found, 1 when something was, 2 for a wrong command line, 3 "
    "when\n"
    "it was interrupted.\n";

constexpr const char* version = "platform_judge " VX_VERSION "\n";

struct Flag {
    const char* name;
    bool Options::*member;
};

constexpr Flag flags[] = {
    {"change", &Options::change},
    {"restart-test", &Options::restart_test},
    {"restore", &Options::restore},
    {"unread-settings", &Options::unread_settings},
    {"poe-reset", &Options::poe_reset},
    {"clear-counters", &Options::clear_counters},
    {"cable-test", &Options::cable_test},
    {"services", &Options::services},
    {"static-macs", &Options::static_macs},
    {"factory-defaults", &Options::factory_defaults},
    {"kill", &Options::kill},
    {"reboot", &Options::reboot},
    {"verbose", &Options::verbose},
};

struct Text {
    const char* name;
    std::string Options::*member;
};

constexpr Text texts[] = {
    {"firmware", &Options::firmware}, {"journal", &Options::journal}, {"json", &Options::json},
    {"junit", &Options::junit},       {"summary", &Options::summary},
};

struct Count {
    const char* name;
    int Options::*member;
};

constexpr Count numbers[] = {
    {"timeout", &Options::timeout},
    {"worker", &Options::worker},
    {"shared", &Options::shared},
    {"from", &Options::from},
};

bool is_family(const std::string& name) {
    return name == "driver" || name == "together" ||
           std::any_of(families().begin(), families().end(), [&](const Family* family) {
               return name == family->name;
           });
}

std::vector<option> table() {
    std::vector<option> all;
    for (const Flag& flag : flags)
        all.push_back({flag.name, no_argument, nullptr, 1});
    for (const Text& text : texts)
        all.push_back({text.name, required_argument, nullptr, 1});
    for (const Count& number : numbers)
        all.push_back({number.name, required_argument, nullptr, 1});
    all.push_back({"family", required_argument, nullptr, 'f'});
    all.push_back({"version", no_argument, nullptr, 'v'});
    all.push_back({"help", no_argument, nullptr, 'h'});
    all.push_back({});
    return all;
}

void store(Options& options, const std::string& name, const char* value) {
    for (const Flag& flag : flags)
        if (name == flag.name)
            options.*flag.member = true;
    for (const Text& text : texts)
        if (name == text.name)
            options.*text.member = value;
    for (const Count& number : numbers)
        if (name == number.name)
            options.*number.member = std::atoi(value);
}

} // namespace

bool Options::wants(const std::string& family) const {
    return families.empty() ||
           std::find(families.begin(), families.end(), family) != families.end();
}

bool parse(int argc, char** argv, Options& options, std::string& message, int& status) {
    std::vector<option> known = table();
    status = 2;
    int index = 0;
    for (int choice; (choice = getopt_long(argc, argv, "", known.data(), &index)) != -1;) {
        if (choice == 'h' || choice == 'v') {
            message = choice == 'h' ? usage : version;
            status = 0;
            return false;
        }
        if (choice == '?')
            return false;
        if (choice == 'f')
            options.families.push_back(optarg);
        else
            store(options, known[static_cast<std::size_t>(index)].name, optarg);
    }
    for (const std::string& family : options.families)
        if (!is_family(family))
            message = "there is no family " + family + "\n";
    if (optind != argc)
        message = usage;
    if (options.timeout < 1)
        message = "--timeout: at least a second\n";
    return message.empty();
}

} // namespace judge
