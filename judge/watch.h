// Watches over the process that makes the calls: takes down what it finds, and goes on without the
// step in which the library crashed or hung.
#pragma once

#include "judge/options.h"
#include "judge/report.h"

namespace judge {

// `arguments` is the command line, for the processes to be started.
Report watch(const Options& options, char** arguments);

} // namespace judge
