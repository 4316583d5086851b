// What is kept over a restart of the switch. A restart lies between the runs of the judge, so what
// it has to remember is in a file beside its journal.
#pragma once

#include <string>

namespace judge {

void remember_restart_in(const std::string& file);
void judge_restart();

} // namespace judge
