// The check-up on standard output.
#pragma once

#include "doctor/checkup.h"

// A line for a person; a wrong one with what to do about it.
void show_line(const Line& line);

// The same for programs: lines are collected, and printed as one JSON array at the end.
void collect_line(const Line& line);
void print_collected();

// Every line that there can be, as a page of Markdown.
void print_explanation();
