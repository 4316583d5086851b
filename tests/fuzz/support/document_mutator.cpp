// On trees of the JSON library, which keep members that are there twice, and their order.
#include "tests/fuzz/support/document_mutator.h"

#include <cjson/cJSON.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

using Document = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;
using Random = std::minstd_rand;

constexpr int deepest = 64; // of what is walked; a text may be nested deeper

std::size_t below(Random& random, std::size_t count) { return random() % count; }

bool is_container(const cJSON* node) { return cJSON_IsObject(node) || cJSON_IsArray(node); }

// A node with the path of the object or array that it is in.
struct Place {
    cJSON* parent;
    cJSON* node;
    std::string path; // of the node
};

void collect(cJSON* parent, const std::string& path, int depth, std::vector<Place>& places) {
    if (depth > deepest)
        return;
    for (cJSON* node = parent->child; node; node = node->next) {
        std::string at = path + "[]";
        if (cJSON_IsObject(parent))
            at = (path.empty() ? "" : path + "/") + (node->string ? node->string : "");
        places.push_back({parent, node, at});
        if (is_container(node))
            collect(node, at, depth + 1, places);
    }
}

std::vector<Place> places_of(cJSON* document) {
    std::vector<Place> places;
    collect(document, "", 0, places);
    return places;
}

class Mutation {
  public:
    Mutation(std::span<const WireMember> members, cJSON* document, unsigned seed)
        : members_(members), document_(document), random_(seed) {}

    void run() {
        using Step = void (Mutation::*)();
        static constexpr Step steps[] = {
            &Mutation::add_member,   &Mutation::add_member,   &Mutation::change_value,
            &Mutation::change_value, &Mutation::change_value, &Mutation::change_bytes,
            &Mutation::repeat,       &Mutation::remove,       &Mutation::exchange};
        for (std::size_t count = 1 + below(random_, 3); count > 0; --count)
            (this->*steps[below(random_, std::size(steps))])();
    }

  private:
    const Place* any() {
        places_ = places_of(document_);
        return places_.empty() ? nullptr : &places_[below(random_, places_.size())];
    }

    const WireMember* any_of(const std::string& object, const char* key = nullptr) {
        std::vector<const WireMember*> fitting;
        for (const WireMember& member : members_)
            if (object == member.object && (!key || std::strcmp(key, member.key) == 0))
                fitting.push_back(&member);
        return fitting.empty() ? nullptr : fitting[below(random_, fitting.size())];
    }

    cJSON* value_of(const WireMember& member) {
        if (std::strcmp(member.opens, "{}") == 0)
            return filled_object(path_of(member));
        if (std::strcmp(member.opens, "[]") == 0)
            return filled_array(path_of(member));
        Document values(cJSON_Parse(member.values), cJSON_Delete);
        const int count = cJSON_GetArraySize(values.get());
        if (count == 0)
            return any_value();
        const auto chosen = static_cast<int>(below(random_, static_cast<std::size_t>(count)));
        return cJSON_DetachItemFromArray(values.get(), chosen);
    }

    static std::string path_of(const WireMember& member) {
        return (*member.object ? std::string(member.object) + "/" : std::string()) + member.key;
    }

    cJSON* filled_object(const std::string& path) {
        cJSON* object = cJSON_CreateObject();
        for (const WireMember& member : members_)
            if (path == member.object && below(random_, 3) != 0)
                cJSON_AddItemToObject(object, member.key, value_of(member));
        return object;
    }

    cJSON* filled_array(const std::string& path) {
        cJSON* array = cJSON_CreateArray();
        for (std::size_t count = 1 + below(random_, 2); count > 0; --count)
            cJSON_AddItemToArray(array, filled_object(path + "[]"));
        return array;
    }

    cJSON* any_value() {
        static const char* const odd[] = {"null",  "true",       "\"\"",  "{}",   "[]", "-1",
                                          "1e300", "4294967296", "\"1\"", "[[]]", "0.5"};
        return cJSON_Parse(odd[below(random_, std::size(odd))]);
    }

    void add_member() {
        const Place* place = any();
        cJSON* object = place && below(random_, 4) != 0 ? place->node : document_;
        const std::string path = object == document_ ? "" : place->path;
        if (cJSON_IsArray(object)) {
            cJSON_AddItemToArray(object, filled_object(path + "[]"));
        } else if (const WireMember* member = any_of(path); member && cJSON_IsObject(object)) {
            cJSON_AddItemToObject(object, member->key, value_of(*member));
        }
    }

    void replace(const Place& place, cJSON* value) {
        if (!value)
            return;
        if (place.node->string) { // an item of an object needs its name before it is put there
            cJSON holder = {};
            holder.type = cJSON_Object;
            cJSON_AddItemToObject(&holder, place.node->string, value);
            value = cJSON_DetachItemViaPointer(&holder, value);
        }
        if (!cJSON_ReplaceItemViaPointer(place.parent, place.node, value))
            cJSON_Delete(value);
    }

    void change_value() {
        const Place* place = any();
        if (!place)
            return;
        const std::string object = place->path.substr(0, place->path.find_last_of("/") + 1);
        const std::string holder = object.empty() ? "" : object.substr(0, object.size() - 1);
        const WireMember* member =
            place->node->string ? any_of(holder, place->node->string) : nullptr;
        const bool known = member && !*member->opens && below(random_, 8) != 0;
        if (known || !is_container(place->node) || below(random_, 4) == 0)
            replace(*place, known ? value_of(*member) : any_value());
    }

    // A text or a number, changed as the fuzzer changes bytes.
    void change_bytes() {
        const Place* place = any();
        if (!place || is_container(place->node))
            return;
        std::vector<std::uint8_t> bytes(256);
        const std::string text = cJSON_IsString(place->node) ? place->node->valuestring : "";
        std::size_t size = std::min(text.size(), bytes.size());
        std::memcpy(bytes.data(), text.data(), size);
        size = LLVMFuzzerMutate(bytes.data(), size, bytes.size());
        const std::string changed(reinterpret_cast<const char*>(bytes.data()), size);
        if (cJSON_IsNumber(place->node))
            replace(*place, cJSON_CreateNumber(place->node->valuedouble + (size % 2 ? 1 : -1)));
        else
            replace(*place, cJSON_CreateString(changed.c_str()));
    }

    void repeat() {
        if (const Place* place = any()) {
            cJSON* copy = cJSON_Duplicate(place->node, true);
            if (place->node->string)
                cJSON_AddItemToObject(place->parent, place->node->string, copy);
            else
                cJSON_AddItemToArray(place->parent, copy);
        }
    }

    void remove() {
        if (const Place* place = any())
            cJSON_Delete(cJSON_DetachItemViaPointer(place->parent, place->node));
    }

    // The values of two members; one that holds the other stays where it is.
    void exchange() {
        const Place* one = any();
        if (!one)
            return;
        const Place& first = *one;
        const Place& second = places_[below(random_, places_.size())];
        cJSON* to_first = cJSON_Duplicate(second.node, true);
        cJSON* to_second = cJSON_Duplicate(first.node, true);
        if (first.node == second.node || holds(first.node, second.node) ||
            holds(second.node, first.node)) {
            cJSON_Delete(to_first);
            cJSON_Delete(to_second);
            return;
        }
        replace(first, to_first);
        replace(second, to_second);
    }

    static bool holds(const cJSON* outer, const cJSON* node) {
        for (const cJSON* child = outer->child; child; child = child->next)
            if (child == node || holds(child, node))
                return true;
        return false;
    }

    std::span<const WireMember> members_;
    cJSON* document_;
    Random random_;
    std::vector<Place> places_;
};

Document parse(const std::uint8_t* data, std::size_t size) {
    return {cJSON_ParseWithLength(reinterpret_cast<const char*>(data), size), cJSON_Delete};
}

// 0 where it does not fit.
std::size_t print(const cJSON* document, std::uint8_t* data, std::size_t most) {
    std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(document), cJSON_free);
    const std::size_t size = text ? std::strlen(text.get()) : 0;
    if (size > most)
        return 0;
    std::memcpy(data, text.get(), size);
    return size;
}

} // namespace

std::size_t mutate_document(
    std::span<const WireMember> members, std::uint8_t* data, std::size_t size, std::size_t most,
    unsigned seed) {
    Random random(seed);
    Document document = parse(data, size);
    if (!document && size < 2)
        document.reset(cJSON_CreateObject());
    if (!is_container(document.get()) || below(random, 16) == 0)
        return LLVMFuzzerMutate(data, size, most);
    Mutation(members, document.get(), seed).run();
    const std::size_t changed = print(document.get(), data, most);
    return changed ? changed : LLVMFuzzerMutate(data, size, most);
}

std::size_t cross_documents(
    const std::uint8_t* one, std::size_t one_size, const std::uint8_t* other,
    std::size_t other_size, std::uint8_t* out, std::size_t most, unsigned seed) {
    Random random(seed);
    Document first = parse(one, one_size);
    Document second = parse(other, other_size);
    if (!is_container(first.get()) || !is_container(second.get()))
        return 0;
    std::vector<Place> from = places_of(second.get());
    if (from.empty())
        return 0;
    const Place& chosen = from[below(random, from.size())];
    std::vector<Place> targets = places_of(first.get());
    cJSON* target = first.get(); // where the first has an object of the same path, or the document
    for (const Place& place : targets)
        if (place.path == chosen.path.substr(0, chosen.path.find_last_of('/')))
            target = place.node;
    cJSON* copy = cJSON_Duplicate(chosen.node, true);
    if (cJSON_IsArray(target))
        cJSON_AddItemToArray(target, copy);
    else if (cJSON_IsObject(target))
        cJSON_AddItemToObject(target, chosen.node->string ? chosen.node->string : "system", copy);
    else
        cJSON_Delete(copy);
    return print(first.get(), out, most);
}
