// The sample report through RapidJSON: names by reference, texts copied, a member a line.
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include "bench/json/library.h"
#include "bench/json/sample_report.h"

namespace bench {

namespace {

struct Rapid {
    struct Document {
        rapidjson::Document root;
        rapidjson::StringBuffer text;
    };
    using Node = rapidjson::Value*;

    static rapidjson::Document::AllocatorType& pool(Document& document) {
        return document.root.GetAllocator();
    }
    static void add(Document& document, Node object, const char* name, rapidjson::Value&& value) {
        object->AddMember(rapidjson::StringRef(name), std::move(value), pool(document));
    }
    static Node last(Node object) { return &(object->MemberEnd() - 1)->value; }

    static Node object(Document& document, Node parent, const char* name) {
        add(document, parent, name, rapidjson::Value(rapidjson::kObjectType));
        return last(parent);
    }
    static Node array(Document& document, Node parent, const char* name) {
        add(document, parent, name, rapidjson::Value(rapidjson::kArrayType));
        return last(parent);
    }
    static Node element(Document& document, Node array) {
        array->PushBack(rapidjson::Value(rapidjson::kObjectType), pool(document));
        return array->End() - 1;
    }
    static void text(Document& document, Node object, const char* name, const char* value) {
        add(document, object, name, rapidjson::Value(value, pool(document)));
    }
    static void number(Document& document, Node object, const char* name, int value) {
        add(document, object, name, rapidjson::Value(value));
    }
    static void counter(Document& document, Node object, const char* name, std::uint32_t value) {
        add(document, object, name, rapidjson::Value(value));
    }
    static void fraction(Document& document, Node object, const char* name, double value) {
        add(document, object, name, rapidjson::Value(value));
    }
    static void boolean(Document& document, Node object, const char* name, bool value) {
        add(document, object, name, rapidjson::Value(value));
    }
};

void* build() {
    auto* document = new Rapid::Document;
    document->root.SetObject();
    fill<Rapid>(*document, &document->root);
    return document;
}

std::size_t print(void* built) {
    auto* document = static_cast<Rapid::Document*>(built);
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(document->text);
    writer.SetIndent('\t', 1);
    document->root.Accept(writer);
    return document->text.GetSize();
}

void discard(void* built) { delete static_cast<Rapid::Document*>(built); }

} // namespace

const JsonLibrary* rapidjson_library() {
    static const JsonLibrary library = {
        "RapidJSON " RAPIDJSON_VERSION_STRING, build, print, discard};
    return &library;
}

} // namespace bench
