// Settings documents whose calls fail in turn, for a switch of twelve logical ports. Applied twice
// they leave what they left once.
#pragma once

// All sections but link aggregation, whose groups look through all static addresses: far too many
// calls for a document as long as this.
extern const char* const whole_settings;

// A group of either kind, each made from one of the other kind.
extern const char* const group_settings;
