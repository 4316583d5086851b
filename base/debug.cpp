// A text is written to a console that may be stuck.
#include "base/debug.h"

#include <fcntl.h>
#include <poll.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "base/text.h"

uint32_t debug_flag;

namespace {

enum { PATIENCE = 1000 }; // milliseconds in which a console at work takes something

// A console that took nothing, such as one whose terminal holds its output, is not waited for again
// until it does: the agent has other things to do.
bool is_stuck;

bool is_ready(int console) {
    pollfd waiting = {console, POLLOUT, 0};
    return poll(&waiting, 1, is_stuck ? 0 : PATIENCE) > 0;
}

void write_to_console(const char* text, size_t length) {
    int console = open("/dev/console", O_WRONLY | O_NONBLOCK | O_NOCTTY);
    if (console < 0)
        return;
    ssize_t written = 1;
    while (length > 0 && written > 0) {
        is_stuck = !is_ready(console);
        written = is_stuck ? 0 : write(console, text, length);
        if (written > 0) {
            text += written;
            length -= static_cast<size_t>(written);
        }
    }
    close(console);
}

} // namespace

void print_to_console(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* text = format_text(format, arguments);
    va_end(arguments);
    if (text)
        write_to_console(text, strlen(text));
    free(text);
}
