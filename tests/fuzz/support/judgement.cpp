// The ranges are those of the judge of platform libraries, read from its tables; what no table has
// is judged by the simulated platform library, which refuses what the headers rule out.
#include "tests/fuzz/support/judgement.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string_view>

#include "json/json_document.h"
#include "json/json_print.h"
#include "judge/family.h"
#include "sim/instruments/codes.h"
#include "sim/library/call.h"

namespace {

[[noreturn]] void convict(const char* what, std::string_view text) {
    std::fprintf(stderr, "%s: %.*s\n", what, static_cast<int>(text.size()), text.data());
    std::abort();
}

// --- Setters.

// The numbers that an argument may be: a range, or a few.
struct Range {
    judge::Number low, high;
    std::set<judge::Number> few;

    bool has(judge::Number number) const {
        return few.empty() ? number >= low && number <= high : few.contains(number);
    }
};

// That a VLAN exists is asked of the switch of the moment; its id is of one range on all. Where no
// number is bad for certain, a switch may take any.
Range range_of(const judge::Parameter& input) {
    if (input.name == judge::vlan.name)
        return {1, 4094, {}};
    if (!input.bad)
        return {INT64_MIN, INT64_MAX, {}};
    if (input.low <= input.high)
        return {input.low, input.high, {}};
    const judge::Numbers good = input.good();
    return {0, -1, {good.begin(), good.end()}};
}

using Ranges = std::vector<Range>;

std::map<std::string, Ranges, std::less<>> read_ranges() {
    std::map<std::string, Ranges, std::less<>> all;
    const sim::InsideLibrary untraced;
    for (const judge::Family* family : judge::families())
        for (const judge::Setting& setting :
             family->settings ? family->settings() : judge::Settings()) {
            Ranges& ranges = all[setting.name];
            for (const judge::Parameters* inputs : {&setting.keys, &setting.values})
                for (const judge::Parameter& input : *inputs)
                    ranges.push_back(range_of(input));
        }
    return all;
}

// A line of the trace: NAME(ARGUMENTS) = RESULT.
struct TracedCall {
    std::string_view name, arguments;
    int result = 0;
};

TracedCall take_apart(std::string_view line) {
    TracedCall call;
    const std::size_t open = std::min(line.find('('), line.size());
    const std::size_t close = std::min(line.rfind(") = "), line.size());
    call.name = line.substr(0, open);
    if (open + 1 < close)
        call.arguments = line.substr(open + 1, close - open - 1);
    if (close + 4 < line.size())
        std::from_chars(line.data() + close + 4, line.data() + line.size(), call.result);
    return call;
}

// Nothing when one of them is no number: a text, a set, a record.
std::optional<judge::Numbers> numbers_of(std::string_view arguments) {
    judge::Numbers numbers;
    while (!arguments.empty()) {
        const std::size_t end = std::min(arguments.find(", "), arguments.size());
        judge::Number number = 0;
        const auto [last, error] =
            std::from_chars(arguments.data(), arguments.data() + end, number);
        if (error != std::errc() || last != arguments.data() + end)
            return std::nullopt;
        numbers.push_back(number);
        arguments.remove_prefix(std::min(end + 2, arguments.size()));
    }
    return numbers;
}

bool is_setter(std::string_view name) {
    static constexpr std::string_view endings[] = {"_set", "_add", "_del",    "_create",  "_bind",
                                                   "_clr", "_sel", "_unbind", "_destroy", "_edit"};
    return std::ranges::any_of(endings, [&](auto ending) { return name.ends_with(ending); });
}

bool is_refusal_of_range(int result) {
    return result == sim::code_null || result == sim::code_bad_value ||
           result == sim::code_too_long || result == sim::code_bad_text ||
           result == sim::code_no_port;
}

// Arguments in which the cloud's own number or text is handed over as it came: the platform alone
// says what it takes, and its code is what the cloud gets to see. Counted from 0.
const std::map<std::string_view, std::set<std::size_t>> handed_over = {
    {"sal_ace_entry_create", {1}}, // the sequence number
    {"sal_ace_entry_del", {1}},
    {"sal_acl_entry_create", {0}}, // the name
    {"sal_lacp_member_set", {1}},
    {"sal_lacp_activeMode_set", {1}},
    {"sal_mirror_group_del", {0}},
    {"sal_mirror_group_igrState_set", {0, 1}},
    {"sal_mirror_group_sourcePort_set", {0, 1, 2}},
    {"sal_mirror_group_targetPort_set", {0, 1}},
    {"sal_poe_port_priority_config_set", {1}},
    {"sal_poe_power_th_type_config_set", {1}}, // the type plus 1, as a byte
    {"sal_qos_portCos_set", {1}},
    {"sal_rate_egrBandwidthCtrlRate_set", {1}},
    {"sal_rate_igrBandwidthCtrlRate_set", {1}},
    {"sal_snmp_com2sec_add", {0}},
    {"sal_snmp_target_add", {0}},
    {"sal_sys_dualImage_sel", {0}},
    {"sal_sys_systemName_set", {0}},
    {"sal_trunk_staticMember_set", {1}},
    {"sal_vlan_portAdminPvid_set", {1}},
    {"sal_vlan_portVoiceVlancosMode_set", {1}},
    {"sal_vlan_voiceVid_set", {0}},
    {"sal_vlan_voiceVlanAging_set", {0}},
    {"sal_vlan_voiceVlanOui_set", {0}}, // the place
    {"sal_vlan_voiceVlanQos_set", {2}},
    {"sal_vlan_voiceVlanState_set", {0}},
    {"sal_vxcloud_checkin_host_set", {0}},
    {"sal_vxcloud_connkeeper_host_set", {0}},
    {"sal_vxcloud_fallback_host_set", {0}},
};

bool is_handed_over(std::string_view name, std::size_t argument) {
    const auto found = handed_over.find(name);
    return found != handed_over.end() && found->second.contains(argument);
}

bool within(const Ranges& ranges, std::string_view name, const judge::Numbers& numbers) {
    if (numbers.size() != ranges.size())
        return false;
    for (std::size_t i = 0; i < ranges.size(); ++i)
        if (!ranges[i].has(numbers[i]) && !is_handed_over(name, i))
            return false;
    return true;
}

bool is_good(const TracedCall& call) {
    static const auto ranges = read_ranges();
    const auto known = ranges.find(call.name);
    const auto numbers = numbers_of(call.arguments);
    if (known != ranges.end() && numbers)
        return within(known->second, call.name, *numbers);
    return handed_over.contains(call.name) || !is_refusal_of_range(call.result);
}

} // namespace

void judge_setters(const std::vector<std::string>& trace) {
    for (const std::string& line : trace) {
        const TracedCall call = take_apart(line);
        if (is_setter(call.name) && !is_good(call))
            convict("out of range", line);
    }
}

// --- Reports.

namespace {

void judge_document(cJSON* document) {
    std::unique_ptr<char, decltype(&std::free)> text(printJson(document), &std::free);
    if (!text || !nlohmann::json::accept(text.get())) // which refuses what is not UTF-8
        convict("no JSON in UTF-8", text ? text.get() : "nothing");
    deleteJsonObject(document);
}

} // namespace

void judge_report(void (*build)(cJSON* document)) {
    cJSON* document = createJsonObject();
    build(document);
    judge_document(document);
}

void judge_section(int (*build)(cJSON* document)) {
    cJSON* document = createJsonObject();
    build(document);
    judge_document(document);
}
