// What holds of every run, whatever the input was.
#pragma once

#include <cjson/cJSON.h>

#include <string>
#include <vector>

// Stops the process, with a line that says why, when a setter was called with a number that its
// header rules out, or with anything else that the platform refuses for being out of range. Setters
// that hand a number of the cloud's over as it is are left out; judgement.cpp lists them.
void judge_setters(const std::vector<std::string>& trace);

// The same, when what `build` adds to a document is no JSON or no UTF-8 once it is printed.
void judge_report(void (*build)(cJSON* document));
void judge_section(int (*build)(cJSON* document));
