// What the check-up knows of the time.
#pragma once

#include <time.h>

// The cloud's time less the switch's, in seconds; known once the time service has told it.
struct CloudTime {
    bool is_known;
    long long ahead;
};

extern CloudTime cloud_time;

enum { DATE_SIZE = 32 };

// "2026-11-21 12:00:00 UTC". `text` holds DATE_SIZE bytes.
void format_date(char* text, time_t when);
