// The steps of a judgement, each a line of the report's detail: what is read, what is changed.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "judge/options.h"

namespace judge {

struct Step {
    std::string family;
    std::string probe;
    std::function<void()> judge;
};

// All steps that these options ask for, in order. The same in every process of one judgement.
std::vector<Step> steps(const Options& options);

} // namespace judge
