// cJSON of the version whose source the bench was given: in a library that shows nothing of it.
#include <string>

#include "bench/json/cjson.h"

[[gnu::visibility("default")]] const bench::JsonLibrary* bench::upstream_cjson() {
    static const std::string name = std::string("cJSON ") + cJSON_Version() + ", upstream";
    static const JsonLibrary library = {name.c_str(), build_stock, print_stock, discard_stock};
    return &library;
}
