// "pattern" of a schema. The library's own way, std::regex, takes some of the stack for every
// character, and ends the program at a text of some ten thousand; a list of VLANs may have more.
#pragma once

#include <string>

#include "lab/schema_rule.h"

namespace lab {

// Patterns are read as extended regular expressions of POSIX, which say the same as those of a
// schema as long as nobody writes "\d" or "(?:". Throws std::invalid_argument for one that has
// such.
Rule make_pattern_rule(const std::string& pattern);

} // namespace lab
