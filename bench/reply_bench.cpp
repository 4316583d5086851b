// What replies of the greatest length hold of the heap once they are documents: the same few
// characters again and again, as an unkind cloud would send them.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstddef>
#include <string>

#include "json/json_document.h"

namespace {

constexpr std::size_t longest = 1048576; // of a reply; see LONGEST_DOCUMENT

std::string reply_of(char opening, const std::string& element, char closing) {
    std::string text(1, opening);
    while (text.size() + element.size() + 1 <= longest)
        text += element + ',';
    text.back() = closing;
    return text;
}

void hold(benchmark::State& state, const std::string& text) {
    std::size_t held = 0;
    for (auto _ : state) {
        std::size_t before = mallinfo2().uordblks;
        cJSON* document = parseJsonString(text.c_str());
        held = mallinfo2().uordblks - before;
        if (!document)
            state.SkipWithError("the document was refused");
        deleteJsonObject(document);
    }
    state.counters["reply_bytes"] = static_cast<double>(text.size());
    state.counters["held_bytes"] = static_cast<double>(held);
}

void reply_of_numbers(benchmark::State& state) { hold(state, reply_of('[', "0", ']')); }
void reply_of_texts(benchmark::State& state) { hold(state, reply_of('[', "\"\"", ']')); }
void reply_of_members(benchmark::State& state) { hold(state, reply_of('{', "\"\":0", '}')); }
void reply_of_named_texts(benchmark::State& state) { hold(state, reply_of('{', "\"\":\"\"", '}')); }

BENCHMARK(reply_of_numbers)->Unit(benchmark::kMillisecond);
BENCHMARK(reply_of_texts)->Unit(benchmark::kMillisecond);
BENCHMARK(reply_of_members)->Unit(benchmark::kMillisecond);
BENCHMARK(reply_of_named_texts)->Unit(benchmark::kMillisecond);

} // namespace
