// One settings document for all sections but link aggregation, whose groups look through the static
// addresses for too long to be formed thousands of times.
#pragma once

extern const char* const whole_settings;
