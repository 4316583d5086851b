// The process that makes the calls. What it finds goes through a pipe to the one that watches over
// it, which outlives a library that crashes or hangs.
#pragma once

#include "judge/options.h"

namespace judge {

int work(const Options& options);

} // namespace judge
