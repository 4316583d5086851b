// The check-up: every step in the order in which a check-in depends on them.
#pragma once

#include "doctor/step.h"

struct Line {
    const Step* step;
    const Finding* finding; // null for a skipped step
    Verdict verdict;
    const char* missing; // the title of the step that a skipped one needs
    char detail[DETAIL_SIZE];
};

// All steps, in order, and their number.
extern const Step steps[];
extern const int steps_count;

// Runs every step and calls `show` with the line of each as soon as it is known. Returns how many
// lines are wrong.
int run_checkup(void (*show)(const Line& line));
