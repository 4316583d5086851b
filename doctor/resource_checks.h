// What an upgrade needs of the switch, and what it last saved.
#pragma once

#include "doctor/step.h"

extern const Findings memory_findings;
extern const Findings space_findings;
extern const Findings saved_findings;

int check_memory(char* detail);
int check_space(char* detail);
int check_saved(char* detail);
