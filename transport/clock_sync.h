// The switch's clock from the cloud's time API. A switch without a battery starts in the past,
// where no certificate is valid yet; so the time is fetched without TLS.
#pragma once

#include <time.h>

// Clear in a program that only looks: sync_clock then does nothing.
extern bool may_set_clock;

// Asks fallback_host for the time, at most twice, and sets the system clock when there is one.
void sync_clock();

// The time in a reply, {"time": "YYYY-MM-DDThh:mm:ssZ"}, read as local time; -1 if it holds none.
time_t parse_time_reply(const char* body);
