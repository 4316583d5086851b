// The sample report through cJSON's own calls. For one source file a version of it.
#pragma once

#include <cJSON.h>

#include <cstdlib>
#include <cstring>

#include "bench/json/library.h"
#include "bench/json/sample_report.h"

namespace {

struct Stock {
    struct Document {
        cJSON* root;
        char* text;
    };
    using Node = cJSON*;

    static Node object(Document&, Node parent, const char* name) {
        return cJSON_AddObjectToObject(parent, name);
    }
    static Node array(Document&, Node parent, const char* name) {
        return cJSON_AddArrayToObject(parent, name);
    }
    static Node element(Document&, Node array) {
        cJSON* object = cJSON_CreateObject();
        cJSON_AddItemToArray(array, object);
        return object;
    }
    static void text(Document&, Node object, const char* name, const char* value) {
        cJSON_AddStringToObject(object, name, value);
    }
    static void number(Document&, Node object, const char* name, int value) {
        cJSON_AddNumberToObject(object, name, value);
    }
    static void counter(Document&, Node object, const char* name, std::uint32_t value) {
        cJSON_AddNumberToObject(object, name, value);
    }
    static void fraction(Document&, Node object, const char* name, double value) {
        cJSON_AddNumberToObject(object, name, value);
    }
    static void boolean(Document&, Node object, const char* name, bool value) {
        cJSON_AddBoolToObject(object, name, value);
    }
};

void* build_stock() {
    auto* document = new Stock::Document{cJSON_CreateObject(), nullptr};
    bench::fill<Stock>(*document, document->root);
    return document;
}

std::size_t print_stock(void* built) {
    auto* document = static_cast<Stock::Document*>(built);
    document->text = cJSON_Print(document->root);
    return std::strlen(document->text);
}

void discard_stock(void* built) {
    auto* document = static_cast<Stock::Document*>(built);
    std::free(document->text);
    cJSON_Delete(document->root);
    delete document;
}

} // namespace
