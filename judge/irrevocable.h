// What cannot be put back, and is done only when its option asks for it.
#pragma once

#include <vector>

#include "judge/steps.h"

namespace judge {

void add_irrevocable(std::vector<Step>& all, const Options& options);

} // namespace judge
