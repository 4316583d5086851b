// cJSON as the distribution packages it, which the agent's layer stands on.
#include <string>

#include "bench/json/cjson.h"

const bench::JsonLibrary& bench::packaged_cjson() {
    static const std::string name = std::string("cJSON ") + cJSON_Version() + ", packaged";
    static const JsonLibrary library = {name.c_str(), build_stock, print_stock, discard_stock};
    return library;
}
