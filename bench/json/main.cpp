// A check-in report built and printed through the agent's layer and through other libraries, turn
// by turn in one run: processor time, the median of the repetitions and their range.
#include <cstdio>
#include <string>
#include <vector>

#include "bench/json/library.h"
#include "bench/turns.h"

namespace {

std::vector<const bench::JsonLibrary*> libraries() {
    std::vector<const bench::JsonLibrary*> all = {
        &bench::agents_layer(), &bench::packaged_cjson(), bench::upstream_cjson(),
        bench::rapidjson_library(), bench::yyjson_library()};
    std::erase(all, nullptr);
    return all;
}

enum { BUILD, PRINT };

bench::Contender contender(const bench::JsonLibrary* library) {
    return [library] {
        void* document = nullptr;
        const double build = bench::time_of([&] { document = library->build(); });
        const double print = bench::time_of([&] { library->print(document); });
        library->discard(document);
        return std::vector{build, print};
    };
}

std::size_t length_of_text(const bench::JsonLibrary* library) {
    void* document = library->build();
    const std::size_t length = library->print(document);
    library->discard(document);
    return length;
}

} // namespace

int main() {
    const auto all = libraries();
    std::vector<bench::Contender> contenders;
    for (const bench::JsonLibrary* library : all)
        contenders.push_back(contender(library));
    const auto times = bench::take_turns(contenders, {});
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::string name = all[i]->name;
        bench::print_time(name + ": build", times[i][BUILD]);
        bench::print_time(
            name + ": print " + std::to_string(length_of_text(all[i])) + " bytes", times[i][PRINT]);
    }
    using bench::operator+;
    const bench::Values own = times[0][BUILD] + times[0][PRINT];
    for (std::size_t i = 1; i < all.size(); ++i) {
        const std::string name = all[i]->name;
        bench::print_ratio(name + " / layer, both", times[i][BUILD] + times[i][PRINT], own);
        bench::print_ratio("layer / " + name + ", print", times[0][PRINT], times[i][PRINT]);
    }
}
