// What all steps of the check-up share.
#include "doctor/step.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

Verdict verdict_of(const Step& step, const Finding& finding) {
    return step.optional && finding.verdict == VERDICT_WRONG ? VERDICT_WARNING : finding.verdict;
}

void describe(char* detail, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(detail, DETAIL_SIZE, format, arguments);
    va_end(arguments);
}

void describe_more(char* detail, const char* format, ...) {
    size_t used = strlen(detail);
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(detail + used, DETAIL_SIZE - used, format, arguments);
    va_end(arguments);
}
