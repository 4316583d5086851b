// Diagnostics that the cloud asks for: what it names becomes a word of a command line, and nothing
// in it a command.
#include "sections/diagnostic.h"

#include <memory>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>

#include "base/command.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/diag.h"
#include "platform/util.h"
#include "sections/section.h"

int vxc_cable_test(int port) {
    sal_cablediag_copper_set(port);
    cablediag_getret(&cable_result, static_cast<uint32_t>(port));
    cable_result.port = static_cast<uint32_t>(port);
    cable_test_pending = 1;
    return 0;
}

// --- Options of the commands.

namespace {

struct Option {
    const char* key;
    int lowest;
    int highest;
    int otherwise; // stands in for what is out of range
};

const Option hops_option = {"hops", 2, 255, 30};
const Option count_option = {"count", 1, 5, 4};
const Option interval_option = {"interval", 1, 5, 1}; // seconds
const Option size_option = {"size", 8, 5120, 56};     // bytes

// An option that is missing is passed on as 0; only what is given is kept in range.
unsigned read_option(const cJSON* message, const Option& option) {
    int value = 0;
    bool given = read_int(message, option.key, &value);
    if (given && (value < option.lowest || value > option.highest))
        value = option.otherwise;
    return static_cast<unsigned>(value);
}

} // namespace

// --- Command lines.

namespace {

// What a host may consist of to be passed on bare. That includes a leading "-": it is the host the
// cloud named, and what the commands make of it is the worst that it can do.
const char plain_characters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                "0123456789.-:_";

// A text in single quotes, within which a shell takes everything but a single quote as it is; that
// one is put between two quoted parts. `word` has four bytes a character and three more.
void quote(const char* text, char* word) {
    *word++ = '\'';
    for (; *text; ++text) {
        const char* written = *text == '\'' ? "'\\''" : nullptr;
        size_t length = written ? 4 : 1;
        memcpy(word, written ? written : text, length);
        word += length;
    }
    memcpy(word, "'", 2);
}

// A host of any length as one word of a command line; null where memory is short. The message comes
// from a channel that anyone can write to, so nothing in it may be a command to the shell.
OwnedText make_host_word(const char* host) {
    size_t length = strlen(host);
    OwnedText word(static_cast<char*>(malloc(4 * length + 3)));
    if (!word)
        return word;
    if (strspn(host, plain_characters) == length)
        memcpy(word.get(), host, length + 1);
    else
        quote(host, word.get());
    return word;
}

__attribute__((format(printf, 1, 2))) OwnedText format_command(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    OwnedText line(format_text(format, arguments));
    va_end(arguments);
    return line;
}

// --- Traceroute.

OwnedText make_traceroute_command(const char* host, unsigned hops) {
    OwnedText word = make_host_word(host);
    char path[OUTPUT_PATH_SIZE];
    format_traceroute_path(path);
    return word ? format_command("traceroute -v %s -m %u > %s", word.get(), hops, path) : nullptr;
}

// A lock that cannot be given back blocks every later traceroute of this process.
int run_locked(const char* command) {
    if (int code = sal_sys_tracerouteLock_check())
        return record_error(code);
    if (int code = sal_sys_tracerouteLock_take())
        return record_error(code);
    traceroute_status = DIAGNOSTIC_RUNNING;
    run_command(command);
    if (int code = sal_sys_tracerouteLock_give())
        return record_error(code);
    traceroute_status = DIAGNOSTIC_READY;
    return 0;
}

} // namespace

int vxc_traceroute(const cJSON* message) {
    if (traceroute_status != DIAGNOSTIC_IDLE)
        return 0;
    const char* host = getJsonStringValueForKey(message, "host");
    if (!host)
        return record_error(ERROR_BAD_VALUE);
    unsigned hops = read_option(message, hops_option);
    uid = 0;
    OwnedText command = make_traceroute_command(host, hops);
    if (!command)
        return record_error(ERROR_REFUSED);
    return run_locked(command.get());
}

// --- Ping.

namespace {

// A name is for the command to judge, but 0.0.0.0 would be the switch itself.
int check_address(const char* host) {
    if (sal_util_ipv4StrValidate_ret(host, 1) != 1)
        return 0;
    uint32_t address = 0;
    if (int code = sys_util_str2Ip(host, &address))
        return code;
    return address == 0 ? ERROR_REFUSED : 0;
}

OwnedText make_ping_command(const char* host, const cJSON* message) {
    unsigned count = read_option(message, count_option);
    unsigned interval = read_option(message, interval_option);
    unsigned size = read_option(message, size_option);
    OwnedText word = make_host_word(host);
    return word ? format_command(
                      "ping -c %u -s %u -i %u %s > %s", count, size, interval, word.get(),
                      ping_output)
                : nullptr;
}

} // namespace

int vxc_ping_ipv4(const cJSON* message) {
    if (ping_status != DIAGNOSTIC_IDLE)
        return 0;
    const char* host = getJsonStringValueForKey(message, "host");
    if (!host)
        return record_error(ERROR_BAD_VALUE);
    if (int code = check_address(host))
        return record_error(code);
    OwnedText command = make_ping_command(host, message);
    if (!command)
        return record_error(ERROR_REFUSED);
    ping_status = DIAGNOSTIC_RUNNING;
    run_command(command.get());
    ping_status = DIAGNOSTIC_READY;
    return 0;
}
