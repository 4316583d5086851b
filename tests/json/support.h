// Documents and printed texts that clean up after themselves.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include "json/json_document.h"
#include "json/json_print.h"

struct DeleteDocument {
    void operator()(cJSON* root) const { deleteJsonObject(root); }
};
using Document = std::unique_ptr<cJSON, DeleteDocument>;

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, FreeText>;

inline Document parse(const std::string& text) { return Document(parseJsonString(text.c_str())); }

inline std::string printed(const cJSON* root) {
    Text text(printJson(root));
    return text ? text.get() : "(null)";
}

inline std::string printed(const Document& root) { return printed(root.get()); }
