// Trying a setter with each value of its range and beyond, and reading it back.
#include "judge/setting.h"

#include <algorithm>
#include <memory>

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

constexpr std::size_t all_together = 64; // combinations of several values, tried all

Numbers joined(const Numbers& keys, const Numbers& values) {
    Numbers all = keys;
    all.insert(all.end(), values.begin(), values.end());
    return all;
}

std::string text_of(const Numbers& numbers) {
    std::string text;
    for (Number number : numbers)
        text += (text.empty() ? "" : ", ") + std::to_string(number);
    return text;
}

std::vector<std::string> words_of(const Numbers& numbers) {
    std::vector<std::string> words;
    for (Number number : numbers)
        words.push_back(std::to_string(number));
    return words;
}

bool fits_type(const Setting& setting, const Numbers& numbers) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (!setting.takes(i, numbers[i]))
            return false;
    return true;
}

const Settings& all_settings() {
    static const Settings all = [] {
        Settings settings;
        for (const Family* family : families())
            if (family->settings)
                for (Setting& setting : family->settings())
                    settings.push_back(std::move(setting));
        return settings;
    }();
    return all;
}

const Setting* find_setting(const std::string& name) {
    for (const Setting& setting : all_settings())
        if (setting.name == name)
            return &setting;
    return nullptr;
}

// The values to try: every combination where they are few, otherwise one of them at a time.
std::vector<Numbers> values_to_try(const Setting& setting, const Numbers& present) {
    std::size_t combinations = 1;
    for (const Parameter& value : setting.values)
        combinations *= value.good().size();
    if (setting.values.size() == 1 || combinations <= all_together)
        return good_inputs(setting.values);
    std::vector<Numbers> all;
    for (std::size_t i = 0; i < setting.values.size(); ++i)
        for (Number number : setting.values[i].good()) {
            all.push_back(present);
            all.back()[i] = number;
        }
    return all;
}

bool reads_as(const Setting& setting, const Numbers& keys, const Numbers& wanted, Numbers& found) {
    found.clear();
    return setting.read(keys, found) == 0 && found == wanted;
}

void expect(
    const Setting& setting, const Numbers& keys, const Numbers& wanted, const char* why,
    const std::string& says) {
    std::string call = Bench::last();
    Numbers found;
    bench->count_case();
    if (!reads_as(setting, keys, wanted, found))
        bench->convict(
            why, call, says, "read back: " + (found.empty() ? "an error" : text_of(found)));
}

void judge_value(const Setting& setting, const Numbers& keys, const Numbers& values) {
    Numbers before;
    setting.read(keys, before);
    int code = setting.write(joined(keys, values));
    if (code == 0)
        return expect(setting, keys, values, reason::not_stored, "what was set is read back");
    if (!setting.may_refuse)
        bench->works(code, "values of its range are taken");
    expect(setting, keys, before, reason::changed_on_failure, "a failing call changes nothing");
}

void judge_bad(
    const Setting& setting, const Numbers& keys, const Numbers& numbers, const Parameter& wrong,
    const Numbers& present) {
    if (!fits_type(setting, numbers))
        return;
    bench->refuses(
        setting.write(numbers), wrong.name + ": " + wrong.says + "; any other is refused");
    if (setting.read)
        expect(
            setting, keys, present, reason::changed_on_failure, "a failing call changes nothing");
}

// Each number wrong in turn.
void judge_bad_values(const Setting& setting, const Numbers& keys, const Numbers& present) {
    for (std::size_t i = 0; i < setting.values.size(); ++i) {
        const Parameter& value = setting.values[i];
        for (Number wrong : value.bad ? value.bad() : Numbers()) {
            Numbers numbers = joined(keys, present);
            numbers[keys.size() + i] = wrong;
            judge_bad(setting, keys, numbers, value, present);
        }
    }
}

void judge_bad_keys(const Setting& setting, const Numbers& keys, const Numbers& present) {
    for (std::size_t i = 0; i < setting.keys.size(); ++i)
        for (Number wrong : setting.keys[i].bad ? setting.keys[i].bad() : Numbers()) {
            Numbers numbers = joined(keys, present);
            numbers[i] = wrong;
            judge_bad(setting, keys, numbers, setting.keys[i], present);
        }
}

using Others = std::vector<std::pair<Numbers, Numbers>>; // keys and their values

Others read_others(const Setting& setting, const std::vector<Numbers>& keys, const Numbers& but) {
    Others all;
    for (const Numbers& key : keys)
        if (key != but) {
            all.emplace_back(key, Numbers());
            setting.read(key, all.back().second);
        }
    return all;
}

void judge_others(const Setting& setting, const Others& before) {
    std::string call = Bench::last();
    bench->count_case();
    for (const auto& [key, values] : before) {
        Numbers found;
        if (reads_as(setting, key, values, found))
            continue;
        bench->convict(
            reason::changed_another, call, "a setter changes what it is called for",
            "that of " + text_of(key) + " changed from " + text_of(values) + " to " +
                text_of(found));
        return;
    }
}

void judge_key(const Setting& setting, const Numbers& keys, const std::vector<Numbers>& all) {
    Numbers present;
    if (!bench->works(setting.read(keys, present), "a setting can be read"))
        return;
    Undo undo(setting.name, words_of(joined(keys, present)));
    Others others = read_others(setting, all, keys);
    for (const Numbers& values : values_to_try(setting, present)) {
        if (Bench::stopped())
            return;
        judge_value(setting, keys, values);
    }
    judge_others(setting, others);
    bench->works(setting.write(joined(keys, present)), "the value that was read can be set");
    expect(setting, keys, present, reason::not_put_back, "the value that it had before");
    judge_bad_values(setting, keys, present);
    if (keys == all.front())
        judge_bad_keys(setting, keys, present);
}

// Another setting has a value for as long as this lives.
class Held {
  public:
    Held(const Setting& other, Number value) {
        Numbers present;
        if (other.read({}, present) != 0)
            return;
        undo_ = std::make_unique<Undo>(other.name, words_of(present));
        other.write({value});
    }

  private:
    std::unique_ptr<Undo> undo_;
};

void judge_refused_while_off(const Setting& setting, const Setting& other) {
    Held off(other, !setting.needed);
    std::vector<Numbers> keys = good_inputs(setting.keys);
    Numbers present;
    if (keys.empty() || setting.read(keys.front(), present) != 0)
        return;
    for (const Numbers& values : values_to_try(setting, present)) {
        bench->refuses(
            setting.write(joined(keys.front(), values)),
            "refused while " + setting.needs + " has set " + std::to_string(!setting.needed));
        expect(
            setting, keys.front(), present, reason::changed_on_failure,
            "a failing call changes nothing");
    }
}

void judge_setting(const Setting& setting) {
    std::vector<Numbers> keys = good_inputs(setting.keys);
    for (const Numbers& key : keys)
        if (!Bench::stopped())
            judge_key(setting, key, keys);
}

} // namespace

void judge_settings(const Settings& settings) {
    for (const Setting& setting : settings) {
        if (!setting.read || Bench::stopped())
            continue;
        if (setting.needs.empty()) {
            judge_setting(setting);
            continue;
        }
        const Setting& other = *find_setting(setting.needs);
        judge_refused_while_off(setting, other);
        Held on(other, setting.needed);
        judge_setting(setting);
    }
}

void judge_unread_settings(const Settings& settings, bool also_good) {
    for (const Setting& setting : settings) {
        std::vector<Numbers> keys = good_inputs(setting.keys);
        if (setting.read || keys.empty())
            continue;
        Numbers sample;
        for (const Parameter& value : setting.values)
            sample.push_back(value.good().front());
        judge_bad_keys(setting, keys.front(), sample);
        for (const Numbers& key : keys) {
            judge_bad_values(setting, key, sample);
            for (const Numbers& values : good_inputs(setting.values))
                if (also_good)
                    bench->works(
                        setting.write(joined(key, values)), "values of its range are taken");
        }
    }
}

std::vector<const Setting*> simple_settings() {
    std::vector<const Setting*> simple;
    for (const Setting& setting : all_settings())
        if (setting.keys.empty() && setting.read && !setting.may_refuse && setting.needs.empty() &&
            setting.values.size() == 1)
            simple.push_back(&setting);
    return simple;
}

int write_setting(const std::string& name, const Numbers& numbers) {
    const Setting* setting = find_setting(name);
    if (!setting || numbers.size() != setting->keys.size() + setting->values.size())
        return -1;
    return setting->write(numbers);
}

} // namespace judge
