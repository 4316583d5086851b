// What the cloud's services say: the time, the clock by it, a signed check-in, the keeper.
#pragma once

#include "doctor/step.h"

extern const Findings time_findings;
extern const Findings clock_findings;
extern const Findings report_findings;
extern const Findings checkin_findings;
extern const Findings keeper_findings;

// Leaves the cloud's time in cloud_time.
int check_time(char* detail);
int check_clock(char* detail);

// Builds the whole report of the switch and keeps it for the check-in.
int check_report(char* detail);

// Sends it, signed, as the agent would. What comes back is looked at and not applied.
int check_checkin(char* detail);

int check_keeper(char* detail);
