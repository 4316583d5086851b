// The sample report through the agent's own layer.
#include <cstdlib>
#include <cstring>

#include "bench/json/library.h"
#include "bench/json/sample_report.h"
#include "json/json_document.h"
#include "json/json_print.h"

namespace bench {

namespace {

struct Layer {
    struct Document {
        cJSON* root;
        char* text;
    };
    using Node = cJSON*;

    static Node object(Document&, Node parent, const char* name) {
        return attachJsonObject(parent, name);
    }
    static Node array(Document&, Node parent, const char* name) {
        return attachJsonArray(parent, name);
    }
    static Node element(Document&, Node array) {
        cJSON* object = createJsonObject();
        addJsonArrayItem(array, object);
        return object;
    }
    static void text(Document&, Node object, const char* name, const char* value) {
        addJsonObjectStringItem(object, name, value);
    }
    static void number(Document&, Node object, const char* name, int value) {
        addJsonObjectIntItem(object, name, value);
    }
    static void counter(Document&, Node object, const char* name, std::uint32_t value) {
        addJsonObjectLongUintItem(object, name, value);
    }
    static void fraction(Document&, Node object, const char* name, double value) {
        addJsonObjectDoubleItem(object, name, value);
    }
    static void boolean(Document&, Node object, const char* name, bool value) {
        addJsonObjectBoolItem(object, name, value);
    }
};

void* build() {
    auto* document = new Layer::Document{createJsonObject(), nullptr};
    fill<Layer>(*document, document->root);
    return document;
}

std::size_t print(void* built) {
    auto* document = static_cast<Layer::Document*>(built);
    document->text = printJson(document->root);
    return std::strlen(document->text);
}

void discard(void* built) {
    auto* document = static_cast<Layer::Document*>(built);
    std::free(document->text);
    deleteJsonObject(document->root);
    delete document;
}

} // namespace

const JsonLibrary& agents_layer() {
    static const JsonLibrary layer = {"the agent's layer", build, print, discard};
    return layer;
}

} // namespace bench
