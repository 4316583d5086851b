// The error list: every code that a section handler met since the last report, and the lines that
// the agent writes to the switch's system log.
#pragma once

#include <stdint.h>

// The agent's own codes; every other code is the platform library's, passed on unchanged.
enum {
    ERROR_REFUSED = -1,       // a change that would do harm
    ERROR_NOT_FOUND = 12,     // what is to be deleted does not exist
    ERROR_BAD_VALUE = 19,     // a value missing or out of range in a settings document
    ERROR_OUT_OF_RANGE = 28,  // a cloud setting out of range
    ERROR_NAME_TOO_LONG = 38, // a community's name
    ERROR_NO_VIEW = 327,      // a group that may neither read nor write
    ERROR_BAD_NAME = 344,     // a name with characters that it may not have
    ERROR_BAD_PRIORITY = 351, // a spanning-tree bridge priority
    ERROR_NO_SECTION = 498,   // the section's own object is missing
};

enum { ERROR_LIST_SIZE = 1024 };

extern "C" {
extern uint32_t error_flags[ERROR_LIST_SIZE];
extern uint32_t error_count; // codes in error_flags, never above ERROR_LIST_SIZE
}

// Appends `code` and returns it, so that a handler fails in one expression. A full list drops the
// code: the count still tells that the apply went wrong.
int record_error(int code);

// Empties the list.
void clear_errors();

// Writes one of the agent's fixed failure texts to the system log and returns what the platform's
// log call returned.
int log_failure(const char* text);
