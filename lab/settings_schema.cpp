// The library says where a document is at fault; what would be right there is read from the schema.
#include "lab/settings_schema.h"

#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "lab/page_files.h"
#include "lab/schema_dialect.h"
#include "lab/schema_pattern.h"

namespace lab {

namespace {

using Json = nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;
using Steps = std::vector<std::string>; // member names and indices from the document inwards

Json read_schema() {
    const auto files = list_page_files();
    const auto file = std::ranges::find(files, "settings.schema.json", &PageFile::name);
    if (file == files.end())
        throw std::logic_error("the settings' schema is missing");
    return Json::parse(file->content);
}

// --- The verdict.

struct EnoughFaults {};
constexpr std::size_t most_faults = 100;

// The library goes on after a fault: megabytes of faults would become gigabytes of complaints.
Rule make_limit_rule() {
    return [](const valijson::adapters::Adapter&, const std::vector<std::string>&,
              valijson::ValidationResults* results) {
        if (results && results->numErrors() > most_faults)
            throw EnoughFaults{};
        return true;
    };
}

class Checker {
  public:
    Checker() {
        const Json translated = translate_schema(source_);
        valijson::SchemaParser parser;
        parser.addConstraintBuilder(
            pattern_keyword, new RuleBuilder([](const valijson::adapters::Adapter& keyword) {
                return make_pattern_rule(keyword.asString());
            }));
        parser.addConstraintBuilder(
            "type", new RuleBuilder([](const auto&) { return make_limit_rule(); }));
        parser.populateSchema(Adapter(translated), schema_);
    }

    const Json& source() const { return source_; }

    bool takes(const Json& document) const { return validate(document, nullptr); }

    // Of a document that is not taken.
    valijson::ValidationResults::Error find_first_error(const Json& document) const {
        valijson::ValidationResults results;
        try {
            validate(document, &results);
        } catch (const EnoughFaults&) {}
        valijson::ValidationResults::Error first = {{"<root>"}, "it does not fit the schema"};
        results.popError(first);
        return first;
    }

  private:
    bool validate(const Json& document, valijson::ValidationResults* results) const {
        return valijson::Validator().validate(schema_, Adapter(document), results);
    }

    const Json source_ = read_schema();
    valijson::Schema schema_;
};

const Checker& get_checker() {
    static const Checker checker;
    return checker;
}

// The library cuts a number beyond 64 bits with a sign; the fraction that it becomes here is no
// integer of a schema.
bool widen(int, Json::parse_event_t, Json& parsed) {
    if (parsed.is_number_unsigned() &&
        parsed.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
        parsed = parsed.get<double>();
    return true;
}

// --- The place.

// The library says ["<root>", "[system]", "[ports]", "[0]"].
Steps read_steps(const std::vector<std::string>& context) {
    Steps steps;
    for (std::size_t i = 1; i < context.size(); i++)
        steps.push_back(context[i].substr(1, context[i].size() - 2));
    return steps;
}

std::string make_pointer(const Steps& steps) {
    Json::json_pointer pointer;
    for (const std::string& step : steps)
        pointer.push_back(step);
    return pointer.to_string();
}

// --- The reason.

struct Words {
    std::string_view library; // how the library's words begin
    std::string_view ours;
    std::string_view before = {}; // where the library names a member: what stands before its name
};

constexpr Words words[] = {
    {"Value type not permitted", "the value is of another type"},
    {"Failed to match against any enum", "the value is none of those that are known"},
    {"Failed to match expected value", "the value is none of those that are known"},
    {"Expected number less", "the number is too large"},
    {"Expected number greater", "the number is too small"},
    {"Value should be a multiple", "the number is not a multiple"},
    {"String should be no more", "the text is too long"},
    {"String should be no fewer", "the text is too short"},
    {"String does not fit", "the text is not of the right form"},
    {"Array should contain no more", "the list is too long"},
    {"Array should contain no fewer", "the list is too short"},
    {"Missing required property", "it lacks", "property '"},
    {"Missing dependency", "what is there goes only with", "dependency '"},
    {"Object contains a property", "there should be no", "constraints: '"},
    {"Failed to validate against schema associated", "there should be no", "name '"},
};

std::string find_name(const std::string& text, std::string_view before) {
    const std::size_t first = text.find(before) + before.size();
    return text.substr(first, text.rfind('\'') - first);
}

std::string word_reason(const std::string& text) {
    const auto known = std::ranges::find_if(
        words, [&](const Words& candidate) { return text.starts_with(candidate.library); });
    if (known == std::end(words))
        return text;
    std::string reason(known->ours);
    if (!known->before.empty())
        reason += " \"" + find_name(text, known->before) + "\"";
    return reason;
}

// What stands behind a reference, with what stands beside it.
Json resolve(const Json& schema, Json part) {
    while (part.is_object() && part.contains("$ref")) {
        Json target = schema.at(Json::json_pointer(part["$ref"].get<std::string>().substr(1)));
        part.erase("$ref");
        target.update(part);
        part = std::move(target);
    }
    return part;
}

Json find_part(const Json& schema, const Steps& steps) {
    Json part = schema;
    for (const std::string& step : steps) {
        const char* const inner = part.contains("items") ? "items" : "properties";
        if (!part.contains(inner))
            return {};
        Json next = part[inner];
        if (part.contains("properties"))
            next = next.value(step, Json());
        part = resolve(schema, std::move(next));
    }
    return part;
}

// What would be right, where that is told in a line; empty otherwise.
std::string describe_part(Json part) {
    if (!part.is_object() || part.contains("properties") || part.contains("items"))
        return {};
    const std::string description = part.value("description", "");
    for (const char* silent : {"description", "default", "deprecated"})
        part.erase(silent);
    return "; right is " + part.dump() + (description.empty() ? "" : ": " + description);
}

} // namespace

std::optional<SettingsFault> find_settings_fault(const std::string& text) {
    const Json document = Json::parse(text, widen);
    const Checker& checker = get_checker();
    if (checker.takes(document))
        return std::nullopt;
    const auto error = checker.find_first_error(document);
    const Steps steps = read_steps(error.context);
    return SettingsFault{
        make_pointer(steps),
        word_reason(error.description) + describe_part(find_part(checker.source(), steps))};
}

} // namespace lab
