// Comparing what must stay as it is, and undoing changes, the last first.
#include "judge/changes.h"

#include <algorithm>

#include "judge/journal.h"

namespace judge {

Undo::Undo(const std::string& call, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), call);
    line_ = journal->note(arguments);
}

// Made also where the judged call has been undone already: it is refused then.
Undo::~Undo() {
    for (const auto& [line, words] : journal->pending())
        if (line == line_)
            undo(words);
    journal->strike(line_);
}

void unchanged(const Operations& reads, const std::function<void()>& work) {
    std::vector<Reading> before = read_all(reads);
    work();
    std::string call = Bench::last();
    std::string different = first_difference(before, read_all(reads));
    bench->count_case();
    if (!different.empty())
        bench->convict(
            reason::changed_on_failure, call, "a failing call changes nothing",
            different + " has another outcome than before");
}

void back_as_before(const Operations& reads, const std::function<void()>& work) {
    if (Bench::stopped())
        return;
    std::vector<Reading> before = read_all(reads);
    work();
    std::string different = first_difference(before, read_all(reads));
    bench->count_case();
    if (!different.empty())
        bench->convict(
            reason::not_put_back, different, "what was changed can be put back",
            "another outcome than before");
}

namespace {

std::string shown(const TextSetting& setting, const std::string& text) {
    return setting.secret ? "(" + std::to_string(text.size()) + " characters)"
                          : show_text(text.c_str());
}

int set(const TextSetting& setting, const std::string& text) {
    return bench->call_as<int, const char*>(
        std::string(setting.name) + "(" + shown(setting, text) + ")", setting.set, text.c_str());
}

bool get(const TextSetting& setting, std::string& text) {
    Guarded buffer(setting.size);
    int code = bench->call(setting.getter, setting.get, buffer.text());
    if (code != 0 || !buffer.terminated())
        return false;
    text = buffer.text();
    return true;
}

// A text of that many characters as a host name has them.
std::string text_of(std::size_t length) {
    std::string text(length, 'j');
    for (std::size_t i = 8; i < length; i += 9)
        text[i] = '-';
    return text;
}

void judge_stored(const TextSetting& setting, const std::string& text) {
    std::string call = Bench::last();
    std::string stored;
    bool same = get(setting, stored) && stored == text;
    bench->count_case();
    if (!same)
        bench->convict(reason::not_stored, call, "the text that was set", shown(setting, stored));
}

void judge_refused(const TextSetting& setting, const std::string& before) {
    std::string call = Bench::last();
    std::string after;
    bench->count_case();
    if (!get(setting, after) || after != before)
        bench->convict(
            reason::changed_on_failure, call, "a failing _set leaves the stored value",
            shown(setting, after));
}

// A text of that length is taken, or is not: then the one before stays.
void judge_length(const TextSetting& setting, std::size_t length) {
    std::string before;
    get(setting, before);
    if (set(setting, text_of(length)) == 0)
        judge_stored(setting, text_of(length));
    else
        judge_refused(setting, before);
}

void judge_good_length(const TextSetting& setting, std::size_t length) {
    if (bench->works(
            set(setting, text_of(length)),
            "texts of at most " + std::to_string(setting.longest) + " characters"))
        judge_stored(setting, text_of(length));
}

void judge_bad_length(const TextSetting& setting, std::size_t length) {
    std::string before;
    get(setting, before);
    if (bench->refuses(set(setting, text_of(length)), "a longer text is refused"))
        judge_refused(setting, before);
}

// The library has a limit of its own below the size of the getter's buffer.
void judge_own_limit(const TextSetting& setting) {
    for (std::size_t length :
         {std::size_t{1}, std::size_t{8}, std::size_t{31}, setting.size / 4, setting.size / 2,
          setting.size - 1})
        judge_length(setting, length);
    judge_bad_length(setting, setting.size);
    judge_bad_length(setting, 4 * setting.size);
}

} // namespace

void judge_text(const TextSetting& setting) {
    std::string before;
    if (!get(setting, before) || Bench::stopped())
        return;
    Undo undo(setting.name, {before});
    if (setting.longest == 0)
        return judge_own_limit(setting);
    for (std::size_t length :
         {std::size_t{0}, std::size_t{1}, std::size_t{16}, setting.longest / 2, setting.longest - 1,
          setting.longest})
        judge_good_length(setting, length);
    judge_bad_length(setting, setting.longest + 1);
    judge_bad_length(setting, 4 * setting.longest);
}

} // namespace judge
