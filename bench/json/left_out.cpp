// Stands for the libraries that the bench was built without.
#include "bench/json/library.h"

namespace bench {

#ifndef WITH_UPSTREAM_CJSON
const JsonLibrary* upstream_cjson() { return nullptr; }
#endif
#ifndef WITH_RAPIDJSON
const JsonLibrary* rapidjson_library() { return nullptr; }
#endif
#ifndef WITH_YYJSON
const JsonLibrary* yyjson_library() { return nullptr; }
#endif

} // namespace bench
