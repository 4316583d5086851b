// The debug console: what the agent is doing, for an engineer at the switch's serial port.
#pragma once

#include <stdint.h>

extern "C" {
extern uint32_t debug_flag; // 0 silences the console; re-read from the store at each loop turn
}

// Writes a text to "/dev/console" when debug_flag is set; when it is clear, nothing is formatted
// and no argument evaluated. Never fails: a text that cannot be formatted or written is lost, and
// so is the rest of one when the console takes nothing for a second.
#define debug_print(...) (debug_flag ? print_to_console(__VA_ARGS__) : static_cast<void>(0))

void print_to_console(const char* format, ...) __attribute__((format(printf, 1, 2)));
