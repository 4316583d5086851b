// A line of the check-up: what is looked at, everything that may be found there, and the steps
// that must have gone well before it makes sense to look.
#pragma once

#include <stddef.h>

enum Verdict { VERDICT_OK, VERDICT_WARNING, VERDICT_WRONG, VERDICT_SKIPPED };

// What a step may find.
struct Finding {
    const char* name; // for programs
    Verdict verdict;
    const char* reason; // what it means, for a person
    const char* remedy; // what to do about it; empty where there is nothing to be done
};

// A table of findings with its length.
struct Findings {
    const Finding* rows;
    int count;

    template <size_t length>
    constexpr explicit Findings(const Finding (&table)[length])
        : rows(table), count(static_cast<int>(length)) {}
};

enum { DETAIL_SIZE = 512, MOST_NEEDS = 4 };

// Looks, and returns the index of what it found among the step's findings. `detail` holds
// DETAIL_SIZE bytes and arrives empty: what was seen this time goes there, never a secret.
using Check = int (*)(char* detail);

struct Step {
    const char* name;  // for programs
    const char* title; // for a person
    Check check;
    const Findings* findings;
    // A check-in can do without it: what is wrong here is only a warning.
    bool optional;
    const char* needs[MOST_NEEDS]; // names of earlier steps; null behind the last
    const char* spoiler; // an earlier step that makes it pointless when found wrong; or null
};

// The verdict that a finding of `step` comes to.
Verdict verdict_of(const Step& step, const Finding& finding);

// Writes what was seen, as printf does. Too long a text is cut.
void describe(char* detail, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Adds to it.
void describe_more(char* detail, const char* format, ...) __attribute__((format(printf, 2, 3)));
