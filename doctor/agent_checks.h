// What the switch itself holds: the agent's process, its name, its stored settings, its account.
#pragma once

#include "doctor/step.h"

extern const Findings agent_findings;
extern const Findings identity_findings;
extern const Findings settings_findings;
extern const Findings account_findings;

// Leaves in agent_runs whether it does.
int check_agent(char* detail);
extern bool agent_runs;

// Makes macstr and macaddrstr.
int check_identity(char* detail);

// Loads the hosts and the interval into the agent's state, where the later steps find them.
int check_settings(char* detail);

// The same with key and secret. Shows the first and the last letter of the key alone.
int check_account(char* detail);
