// A JSON library that builds and prints the sample report.
#pragma once

#include <cstddef>

namespace bench {

// A document owns its text, too.
struct JsonLibrary {
    const char* name;
    void* (*build)();
    std::size_t (*print)(void* document); // the length of the text
    void (*discard)(void* document);
};

const JsonLibrary& agents_layer();
const JsonLibrary& packaged_cjson();
// Null where the bench was built without its source.
const JsonLibrary* upstream_cjson();
const JsonLibrary* rapidjson_library();
const JsonLibrary* yyjson_library();

} // namespace bench
