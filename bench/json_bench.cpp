// A check-in report of about 70 KB, built and printed through the JSON layer and with the JSON
// library's own calls.
#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "json/json_document.h"
#include "json/json_print.h"

namespace {

// The same names for both ways to build a document.
struct Layer {
    static cJSON* object() { return createJsonObject(); }
    static cJSON* array() { return createJsonArray(); }
    static void add(cJSON* to, const char* name, cJSON* node) { addJsonObject(to, name, node); }
    static void append(cJSON* to, cJSON* node) { addJsonArrayItem(to, node); }
    static void text(cJSON* to, const char* name, const char* value) {
        addJsonObjectStringItem(to, name, value);
    }
    static void number(cJSON* to, const char* name, int value) {
        addJsonObjectIntItem(to, name, value);
    }
    static void counter(cJSON* to, const char* name, std::uint32_t value) {
        addJsonObjectLongUintItem(to, name, value);
    }
    static void fraction(cJSON* to, const char* name, double value) {
        addJsonObjectDoubleItem(to, name, value);
    }
    static void boolean(cJSON* to, const char* name, bool value) {
        addJsonObjectBoolItem(to, name, value);
    }
    static char* print(const cJSON* root) { return printJson(root); }
};

struct Stock {
    static cJSON* object() { return cJSON_CreateObject(); }
    static cJSON* array() { return cJSON_CreateArray(); }
    static void add(cJSON* to, const char* name, cJSON* node) {
        cJSON_AddItemToObject(to, name, node);
    }
    static void append(cJSON* to, cJSON* node) { cJSON_AddItemToArray(to, node); }
    static void text(cJSON* to, const char* name, const char* value) {
        cJSON_AddStringToObject(to, name, value);
    }
    static void number(cJSON* to, const char* name, int value) {
        cJSON_AddNumberToObject(to, name, value);
    }
    static void counter(cJSON* to, const char* name, std::uint32_t value) {
        cJSON_AddNumberToObject(to, name, value);
    }
    static void fraction(cJSON* to, const char* name, double value) {
        cJSON_AddNumberToObject(to, name, value);
    }
    static void boolean(cJSON* to, const char* name, bool value) {
        cJSON_AddBoolToObject(to, name, value);
    }
    static char* print(const cJSON* root) { return cJSON_Print(root); }
};

constexpr const char* counters[] = {
    "rx_octets",    "rx_packets",   "rx_unicast",    "rx_multicast", "rx_broadcast", "rx_errors",
    "rx_discards",  "rx_fragments", "rx_jabbers",    "rx_undersize", "rx_oversize",  "rx_crc_align",
    "tx_octets",    "tx_packets",   "tx_unicast",    "tx_multicast", "tx_broadcast", "tx_errors",
    "tx_discards",  "tx_deferred",  "tx_collisions", "pkts_64",      "pkts_65_127",  "pkts_128_255",
    "pkts_256_511", "pkts_512_1023"};

template <typename Json> void add_port(cJSON* ports, int port) {
    cJSON* object = Json::object();
    const char id[] = {static_cast<char>('0' + port / 10), static_cast<char>('0' + port % 10), 0};
    Json::text(object, "id", id);
    Json::text(object, "description", "Access point, second floor \"east\" wing");
    Json::boolean(object, "enable", port % 5 != 0);
    Json::boolean(object, "link_status", port % 3 != 0);
    Json::number(object, "speed", 1000);
    Json::text(object, "duplex", "full");
    Json::number(object, "pvid", 1 + port);
    Json::text(object, "tagged_vlans", "10-20,30,40,100-110");
    cJSON* poe = Json::object();
    Json::boolean(poe, "enable", true);
    Json::fraction(poe, "power", 3.5 + port);
    Json::fraction(poe, "limit", 15.4);
    Json::add(object, "poe", poe);
    cJSON* statistics = Json::object();
    std::uint32_t value = 2654435761u * static_cast<std::uint32_t>(port + 1);
    for (const char* name : counters) {
        Json::counter(statistics, name, value >> (value % 23));
        value = value * 1664525 + 1013904223;
    }
    Json::add(object, "statistics", statistics);
    Json::append(ports, object);
}

template <typename Json> cJSON* build() {
    cJSON* root = Json::object();
    cJSON* system = Json::object();
    Json::add(root, "system", system);
    Json::text(system, "device_name", "Switch-1");
    Json::text(system, "model", "Q18r5");
    Json::text(system, "mac", "0A:1B:2C:3D:4E:5F");
    Json::number(system, "uptime_seconds", 123456);
    cJSON* ports = Json::array();
    Json::add(system, "ports", ports);
    for (int port = 0; port < 64; ++port)
        add_port<Json>(ports, port);
    return root;
}

std::size_t report_length() {
    cJSON* root = build<Layer>();
    char* text = Layer::print(root);
    std::size_t length = std::strlen(text);
    std::free(text);
    cJSON_Delete(root);
    return length;
}

template <typename Json> void report_build(benchmark::State& state) {
    for (auto _ : state) {
        cJSON* root = build<Json>();
        state.PauseTiming();
        cJSON_Delete(root);
        state.ResumeTiming();
    }
}

template <typename Json> void report_print(benchmark::State& state) {
    cJSON* root = build<Json>();
    for (auto _ : state) {
        char* text = Json::print(root);
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
    cJSON_Delete(root);
}

template <typename Json> void report_delete(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        cJSON* root = build<Json>();
        state.ResumeTiming();
        cJSON_Delete(root);
    }
}

BENCHMARK(report_build<Layer>)->Unit(benchmark::kMicrosecond);
BENCHMARK(report_build<Stock>)->Unit(benchmark::kMicrosecond);
BENCHMARK(report_print<Layer>)->Unit(benchmark::kMicrosecond);
BENCHMARK(report_print<Stock>)->Unit(benchmark::kMicrosecond);
BENCHMARK(report_delete<Layer>)->Unit(benchmark::kMicrosecond);
BENCHMARK(report_delete<Stock>)->Unit(benchmark::kMicrosecond);

// Processor time: the machine may have other things to do.
double seconds_now() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

constexpr int turn_length = 16;

// What a build and a print take, the deletion left aside.
template <typename Json> double build_and_print_seconds() {
    double seconds = 0;
    for (int round = 0; round < turn_length; ++round) {
        double start = seconds_now();
        cJSON* root = build<Json>();
        char* text = Json::print(root);
        seconds += seconds_now() - start;
        benchmark::DoNotOptimize(text);
        std::free(text);
        cJSON_Delete(root);
    }
    return seconds / turn_length;
}

// Both ways turn by turn in one loop, so that whatever else the machine does meets both alike.
void report_layer_against_stock(benchmark::State& state) {
    double layer = 0, stock = 0;
    for (auto _ : state) {
        layer += build_and_print_seconds<Layer>();
        stock += build_and_print_seconds<Stock>();
    }
    double turns = static_cast<double>(state.iterations());
    state.counters["bytes"] = static_cast<double>(report_length());
    state.counters["layer_us"] = layer / turns * 1e6;
    state.counters["stock_us"] = stock / turns * 1e6;
    state.counters["times_as_fast"] = stock / layer;
}
BENCHMARK(report_layer_against_stock)->Unit(benchmark::kMicrosecond);

} // namespace
