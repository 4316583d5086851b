// Whether the names of the cloud's hosts resolve, and whether the hosts can be connected to.
#pragma once

#include "doctor/step.h"

extern const Findings name_findings;
extern const Findings connect_findings;

int check_checkin_name(char* detail);
int check_fallback_name(char* detail);
int check_keeper_name(char* detail);

int check_checkin_connect(char* detail);
int check_fallback_connect(char* detail);
int check_keeper_connect(char* detail);
