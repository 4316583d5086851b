// What is left of a document when memory is short.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <utility>

#include "allocation.h"
#include "base/validators.h"
#include "json/json_parser.h"
#include "support.h"
#include "tests/support/on_board.h"

namespace {

using Failure = AllocationFailure;

class OutOfMemory : public OnBoard {};
class JsonRpc : public OnBoard {};

Document build() {
    Document root(createJsonObject());
    addJsonObjectStringItem(root.get(), "string", "text");
    addJsonObjectIntItem(root.get(), "int", 1);
    addJsonObjectLongUintItem(root.get(), "u32", 2);
    addJsonObjectLongLongUintItem(root.get(), "u64", 3);
    addJsonObjectBoolItem(root.get(), "bool", 1);
    addJsonObjectDoubleItem(root.get(), "double", 4.5);
    const int32_t integers[] = {1, 2};
    const double doubles[] = {1.5, 2.5};
    const char* const texts[] = {"a", "b"};
    addJsonObject(root.get(), "integers", createJsonIntArray(integers, 2));
    addJsonObject(root.get(), "doubles", createJsonDoubleArray(doubles, 2));
    addJsonObject(root.get(), "texts", createJsonStringArray(texts, 2));
    cJSON* array = createJsonArray();
    addJsonArrayItem(array, createJsonObject());
    addJsonArrayItem(array, cJSON_CreateLongUintNumber(5));
    addJsonObject(root.get(), "array", array);
    copyJsonStringItem(root.get(), getJsonObjectForKey(root.get(), "array"), "string");
    return root;
}

// Runs `step` with its n-th allocation failing, for every n; `step` is told whether it will fail.
template <typename Step> std::uint64_t fail_every_allocation(bool for_good, Step step) {
    for (std::uint64_t nth = 0;; ++nth) {
        Failure failure(nth, for_good);
        step(failure);
        if (!failure.happened())
            return nth;
    }
}

TEST_F(OutOfMemory, any_allocation_of_a_build_may_fail) {
    std::string whole = printed(build());
    for (bool for_good : {false, true}) {
        std::uint64_t count = fail_every_allocation(for_good, [&](const Failure& failure) {
            Document root = build();
            if (!failure.happened())
                EXPECT_EQ(getJsonArraySize(root.get()), 10);
            else
                EXPECT_LE(getJsonArraySize(root.get()), 10);
        });
        EXPECT_GT(count, 20u);
    }
    EXPECT_EQ(printed(build()), whole);
}

TEST_F(OutOfMemory, a_member_is_added_whole_or_not_at_all) {
    using Add = void (*)(cJSON*);
    const Add adds[] = {
        [](cJSON* o) { addJsonObjectStringItem(o, "a", "text"); },
        [](cJSON* o) { addJsonObjectStringItem(o, "a", "\xFF"); },
        [](cJSON* o) { addJsonObjectIntItem(o, "a", 1); },
        [](cJSON* o) { addJsonObjectLongUintItem(o, "a", 1); },
        [](cJSON* o) { addJsonObjectLongLongUintItem(o, "a", 1); },
        [](cJSON* o) { addJsonObjectBoolItem(o, "a", 1); },
        [](cJSON* o) { addJsonObjectDoubleItem(o, "a", 1); },
        [](cJSON* o) { addJsonObject(o, "a", createJsonObject()); },
    };
    for (Add add : adds) {
        Document root(createJsonObject());
        addJsonObjectIntItem(root.get(), "before", 1);
        std::uint64_t count = fail_every_allocation(false, [&](const Failure& failure) {
            add(root.get());
            EXPECT_EQ(getJsonArraySize(root.get()), failure.happened() ? 1 : 2);
        });
        EXPECT_GT(count, 0u);
        addJsonObjectIntItem(root.get(), "after", 2);
        EXPECT_EQ(getJsonArraySize(root.get()), 3);
    }
}

TEST_F(OutOfMemory, builders_return_null) {
    const int32_t integer = 1;
    const double fraction = 1.5;
    const char* const text = "a";
    Failure failure(0, true);
    EXPECT_EQ(createJsonObject(), nullptr);
    EXPECT_EQ(createJsonArray(), nullptr);
    EXPECT_EQ(createJsonIntArray(&integer, 1), nullptr);
    EXPECT_EQ(createJsonDoubleArray(&fraction, 1), nullptr);
    EXPECT_EQ(createJsonStringArray(&text, 1), nullptr);
    EXPECT_EQ(cJSON_CreateLongUintNumber(1), nullptr);
    EXPECT_EQ(cJSON_CreateLongLongUintNumber(1), nullptr);
}

TEST_F(OutOfMemory, any_allocation_of_a_parse_may_fail) {
    std::uint64_t count = fail_every_allocation(false, [](const Failure& failure) {
        Document root = parse(R"({"a": [1, "text", {"b": null}], "c": true})");
        EXPECT_EQ(root != nullptr, !failure.happened());
    });
    EXPECT_GT(count, 8u);
}

TEST_F(OutOfMemory, any_allocation_of_a_print_may_fail_and_gives_null) {
    std::string deep = std::string(40, '[') + std::string(40, ']');
    std::string wide = "[\"" + std::string(5000, 'x') + "\", \"\\n\", 1, 2.5, {\"a\": {}}]";
    for (const std::string& text : {deep, wide}) {
        Document root = parse(text);
        std::string whole = printed(root);
        // The last allocation only gives back what was not needed: without it the text stands.
        std::uint64_t nulls = 0;
        std::uint64_t count = fail_every_allocation(false, [&](const Failure&) {
            Text result(printJson(root.get()));
            if (result)
                EXPECT_EQ(result.get(), whole);
            else
                ++nulls;
        });
        EXPECT_GE(count, 3u);
        EXPECT_EQ(nulls, count - 1);
    }
}

// The padding moves the place at which the text outgrows its buffer through all that is written.
TEST_F(OutOfMemory, a_print_may_fail_wherever_its_text_outgrows_its_buffer) {
    for (std::size_t padding = 900; padding < 1024; ++padding) {
        Document root = parse(
            R"({"padding": ")" + std::string(padding, 'x') +
            R"(", "list": [[1, 2.5, {"a": {}}], "\n", null], "b": {"c": {"d": true}}})");
        std::uint64_t nulls = 0;
        std::uint64_t count = fail_every_allocation(false, [&](const Failure&) {
            Text result(printJson(root.get()));
            nulls += result == nullptr;
        });
        ASSERT_EQ(nulls, count - 1) << padding;
    }
}

TEST_F(OutOfMemory, address_check_refuses) {
    Failure failure(0);
    EXPECT_EQ(ipv4_addr_validate("192.168.1.1"), -1);
    EXPECT_TRUE(failure.happened());
}

TEST_F(JsonRpc, object_holds_the_version_only) {
    Document root(initJsonRpcObject());
    EXPECT_EQ(printed(root), "{\n\t\"jsonrpc\":\t\"2.0\"\n}");
}

// What a process of its own says on its error output, and the signal that ends it. Not
// EXPECT_DEATH, whose capture file would be looked for on the board. An abort is caught: an
// emulator has words of its own for one that is not.
std::pair<std::string, int> message_and_end(void (*run)()) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        std::signal(SIGABRT, [](int signal) { _exit(signal); });
        run();
        _exit(0);
    }
    ::close(ends[1]);
    std::string message;
    char part[256];
    for (ssize_t size; (size = read(ends[0], part, sizeof part)) > 0;)
        message.append(part, static_cast<std::size_t>(size));
    ::close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    return {message, WEXITSTATUS(status)};
}

TEST_F(JsonRpc, without_memory_for_the_object_the_process_ends_with_an_assertion) {
    auto [message, signal] = message_and_end([] {
        Failure failure(0);
        initJsonRpcObject();
    });
    EXPECT_EQ(signal, SIGABRT);
    EXPECT_EQ(message, "json_parser: Assertion `((void *)0) != root' failed.\n");
}

TEST_F(JsonRpc, without_memory_for_the_member_the_object_is_empty) {
    Failure failure(1);
    Document root(initJsonRpcObject());
    EXPECT_TRUE(failure.happened());
    EXPECT_EQ(printed(root), "{\n}");
}

} // namespace
