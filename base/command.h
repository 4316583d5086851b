// Commands of the switch's shell.
//
// A child inherits the signals that are blocked, and the agent blocks SIGUSR1. So the thread that
// runs a command lets the signal in meanwhile, and puts off what it stands for.
#pragma once

#include <pthread.h>

// Runs a command line, which starts with the signals of a process of its own. Returns what system()
// does.
int run_command(const char* line);

// For the handler of SIGUSR1: whether it interrupted a command. Then there is nothing to be done
// now: the signal comes again when the command has ended, to the thread `receiver`.
bool is_put_off_by_command(pthread_t receiver);
