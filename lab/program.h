// The lab cloud as a program: from its command line to the signal that ends it.
#pragma once

#include "lab/cloud.h"

namespace lab {

// The exit status.
int run_program(const std::vector<std::string>& arguments, Between between = {});

} // namespace lab
