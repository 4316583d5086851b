// Times for people.
#include "doctor/clock.h"

#include <stdio.h>

CloudTime cloud_time;

void format_date(char* text, time_t when) {
    struct tm broken_down = {};
    if (!gmtime_r(&when, &broken_down) ||
        strftime(text, DATE_SIZE, "%Y-%m-%d %H:%M:%S UTC", &broken_down) == 0)
        snprintf(text, DATE_SIZE, "an unknown time");
}
