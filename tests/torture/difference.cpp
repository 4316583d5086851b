// Walks over two trees at once.
#include "tests/torture/difference.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "json/json_node.h"
#include "tests/torture/prescription.h"

namespace torture {

namespace {

bool same_name(const cJSON* one, const cJSON* other) {
    return std::strcmp(one->string ? one->string : "", other->string ? other->string : "") == 0;
}

bool same_value(const cJSON* one, const cJSON* other) {
    constexpr int kinds = NODE_KIND | NODE_UINT32 | NODE_UINT64;
    if ((one->type & kinds) != (other->type & kinds))
        return false;
    if (one->valuestring || other->valuestring)
        return one->valuestring && other->valuestring &&
               std::strcmp(one->valuestring, other->valuestring) == 0;
    return one->valueint == other->valueint &&
           std::memcmp(&one->valuedouble, &other->valuedouble, sizeof one->valuedouble) == 0;
}

std::string text_of(const cJSON* node) {
    char* printed = cJSON_PrintUnformatted(node);
    std::string text = printed ? printed : "?";
    std::free(printed);
    return text.size() > 300 ? text.substr(0, 300) + "..." : text;
}

std::string below(const std::string& path, const cJSON* child, int index) {
    std::string name = child->string ? child->string : std::to_string(index);
    return path.empty() ? name : path + "/" + name;
}

std::string compare(const cJSON* wanted, const cJSON* is, const std::string& path) {
    if (!same_value(wanted, is))
        return path + " is " + text_of(is) + ", not " + text_of(wanted);
    const cJSON* one = wanted->child;
    const cJSON* other = is->child;
    for (int index = 0; one || other; ++index, one = one->next, other = other->next) {
        if (!other)
            return below(path, one, index) + " is missing";
        if (!one || !same_name(one, other))
            return below(path, other, index) + " is there, with " + text_of(other);
        std::string difference = compare(one, other, below(path, one, index));
        if (!difference.empty())
            return difference;
    }
    return "";
}

// False, with `out` as it was, when `left` cannot be what remains of `whole`: it lacks nothing that
// would explain what else it has.
bool collect(
    const cJSON* whole, const cJSON* left, const std::string& path, std::vector<std::string>& out) {
    if (!same_name(whole, left) || !same_value(whole, left))
        return false;
    const std::size_t before = out.size();
    const cJSON* next = left->child;
    int index = 0;
    for (const cJSON* child = whole->child; child; child = child->next, ++index) {
        if (next && collect(child, next, below(path, child, index), out))
            next = next->next;
        else
            out.push_back(below(path, child, index));
    }
    if (next)
        out.resize(before);
    return !next;
}

bool is_number(const std::string& text) {
    return !text.empty() && std::isdigit(static_cast<unsigned char>(text[0]));
}

cJSON* step(cJSON* parent, const std::string& name) {
    if (cJSON_IsArray(parent))
        return is_number(name) ? cJSON_GetArrayItem(parent, std::stoi(name)) : nullptr;
    return cJSON_GetObjectItemCaseSensitive(parent, name.c_str());
}

// The node at all but the last part of the path.
cJSON* parent_of(cJSON* document, const std::vector<std::string>& path) {
    for (std::size_t i = 0; document && i + 1 < path.size(); ++i)
        document = step(document, path[i]);
    return document;
}

bool put(cJSON* document, const std::string& path, const std::string& value) {
    std::vector<std::string> parts = split(path, '/');
    cJSON* parent = parent_of(document, parts);
    cJSON* old = parent ? step(parent, parts.back()) : nullptr;
    cJSON* node = cJSON_Parse(value.c_str());
    if (!node)
        throw std::runtime_error("not JSON: " + value);
    if (!old) {
        cJSON_Delete(node);
        return false;
    }
    if (old->string)
        node->string = strdup(old->string);
    return cJSON_ReplaceItemViaPointer(parent, old, node) != 0;
}

bool subtract(cJSON* document, const std::string& path, int number) {
    std::vector<std::string> parts = split(path, '/');
    cJSON* parent = parent_of(document, parts);
    cJSON* node = parent ? step(parent, parts.back()) : nullptr;
    if (node)
        cJSON_SetNumberValue(node, node->valueint - number);
    return node != nullptr;
}

bool remove(cJSON* document, std::string path) {
    bool with_followers = path.ends_with("..");
    if (with_followers)
        path.resize(path.size() - 2);
    std::vector<std::string> parts = split(path, '/');
    cJSON* parent = parent_of(document, parts);
    cJSON* node = parent ? step(parent, parts.back()) : nullptr;
    bool removed = node != nullptr;
    while (node) {
        cJSON* next = with_followers ? node->next : nullptr;
        cJSON_Delete(cJSON_DetachItemViaPointer(parent, node));
        node = next;
    }
    return removed;
}

} // namespace

std::string first_difference(const cJSON* wanted, const cJSON* is) {
    if (!wanted || !is)
        return wanted == is ? "" : is ? "there is a document" : "there is no document";
    return compare(wanted, is, "");
}

std::vector<std::string> losses(const cJSON* whole, const cJSON* left) {
    std::vector<std::string> out;
    if (!whole || !left || !collect(whole, left, "", out))
        out.assign(1, "");
    return out;
}

bool edit(cJSON* document, const std::string& edit) {
    std::size_t equals = edit.find(" = ");
    if (equals != std::string::npos)
        return put(document, edit.substr(0, equals), edit.substr(equals + 3));
    std::size_t less = edit.find(" -= ");
    if (less != std::string::npos)
        return subtract(document, edit.substr(0, less), std::stoi(edit.substr(less + 4)));
    return remove(document, edit);
}

} // namespace torture
