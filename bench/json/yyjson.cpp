// The sample report through yyjson: names by reference, texts copied, a member a line.
#include <yyjson.hpp>

#include <cstdlib>

#include "bench/json/library.h"
#include "bench/json/sample_report.h"

using namespace duckdb_yyjson; // where the package that carries the source has put it

namespace bench {

namespace {

struct Fast {
    struct Document {
        yyjson_mut_doc* pool;
        char* text;
    };
    using Node = yyjson_mut_val*;

    static Node object(Document& document, Node parent, const char* name) {
        return yyjson_mut_obj_add_obj(document.pool, parent, name);
    }
    static Node array(Document& document, Node parent, const char* name) {
        return yyjson_mut_obj_add_arr(document.pool, parent, name);
    }
    static Node element(Document& document, Node array) {
        return yyjson_mut_arr_add_obj(document.pool, array);
    }
    static void text(Document& document, Node object, const char* name, const char* value) {
        yyjson_mut_obj_add_strcpy(document.pool, object, name, value);
    }
    static void number(Document& document, Node object, const char* name, int value) {
        yyjson_mut_obj_add_int(document.pool, object, name, value);
    }
    static void counter(Document& document, Node object, const char* name, std::uint32_t value) {
        yyjson_mut_obj_add_uint(document.pool, object, name, value);
    }
    static void fraction(Document& document, Node object, const char* name, double value) {
        yyjson_mut_obj_add_real(document.pool, object, name, value);
    }
    static void boolean(Document& document, Node object, const char* name, bool value) {
        yyjson_mut_obj_add_bool(document.pool, object, name, value);
    }
};

void* build() {
    auto* document = new Fast::Document{yyjson_mut_doc_new(nullptr), nullptr};
    Fast::Node root = yyjson_mut_obj(document->pool);
    yyjson_mut_doc_set_root(document->pool, root);
    fill<Fast>(*document, root);
    return document;
}

std::size_t print(void* built) {
    auto* document = static_cast<Fast::Document*>(built);
    std::size_t length = 0;
    document->text = yyjson_mut_write(document->pool, YYJSON_WRITE_PRETTY, &length);
    return length;
}

void discard(void* built) {
    auto* document = static_cast<Fast::Document*>(built);
    std::free(document->text);
    yyjson_mut_doc_free(document->pool);
    delete document;
}

} // namespace

const JsonLibrary* yyjson_library() {
    static const JsonLibrary library = {"yyjson " YYJSON_VERSION_STRING, build, print, discard};
    return &library;
}

} // namespace bench
