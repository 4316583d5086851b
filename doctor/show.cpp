// How lines of the check-up look.
#include "doctor/show.h"

#include <stdio.h>
#include <stdlib.h>

#include "json/json_document.h"
#include "json/json_print.h"

namespace {

const char* const verdict_names[] = {"ok", "warning", "wrong", "skipped"};

cJSON* collected;

// The name of the host or the words of a server may hold anything; a terminal gets none of it.
void print_plain(const char* text) {
    for (; *text; ++text)
        putchar(static_cast<unsigned char>(*text) < ' ' || *text == 0x7f ? ' ' : *text);
}

void print_reason(const Line& line) {
    if (line.missing)
        printf("not looked at: first mend \"%s\"", line.missing);
    else
        print_plain(line.finding->reason);
    if (line.detail[0]) {
        printf(" (");
        print_plain(line.detail);
        printf(")");
    }
    printf("\n");
}

} // namespace

void show_line(const Line& line) {
    printf("%-8s %-35s ", verdict_names[line.verdict], line.step->title);
    print_reason(line);
    if (line.verdict != VERDICT_OK && line.finding && line.finding->remedy[0])
        printf("%-8s %-35s   to do: %s\n", "", "", line.finding->remedy);
    fflush(stdout);
}

void collect_line(const Line& line) {
    if (!collected)
        collected = createJsonArray();
    cJSON* item = createJsonObject();
    addJsonObjectStringItem(item, "step", line.step->name);
    addJsonObjectStringItem(item, "verdict", verdict_names[line.verdict]);
    if (line.finding) {
        addJsonObjectStringItem(item, "finding", line.finding->name);
        addJsonObjectStringItem(item, "reason", line.finding->reason);
        addJsonObjectStringItem(item, "remedy", line.finding->remedy);
    }
    if (line.missing)
        addJsonObjectStringItem(item, "needs", line.missing);
    addJsonObjectStringItem(item, "detail", line.detail);
    addJsonArrayItem(collected, item);
}

void print_collected() {
    char* text = printJson(collected);
    if (text)
        puts(text);
    free(text);
    deleteJsonObject(collected);
    collected = nullptr;
}

void print_explanation() {
    for (int i = 0; i < steps_count; ++i) {
        const Step& step = steps[i];
        printf("\n### %s (`%s`)\n\n", step.title, step.name);
        printf("| finding | verdict | reason | what to do |\n|---|---|---|---|\n");
        for (int j = 0; j < step.findings->count; ++j) {
            const Finding& finding = step.findings->rows[j];
            printf(
                "| `%s` | %s | %s | %s |\n", finding.name, verdict_names[verdict_of(step, finding)],
                finding.reason, finding.remedy);
        }
    }
}
