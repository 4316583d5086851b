// Whether the switch has authorities to trust, and whether the hosts' certificates are theirs.
#pragma once

#include "doctor/step.h"

extern const Findings trust_findings;
extern const Findings certificate_findings;

int check_trust(char* detail);

// Known first: the clock's step, where there was one.
int check_checkin_certificate(char* detail);
int check_fallback_certificate(char* detail);
