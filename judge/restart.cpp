// Leaving marks before a restart, and looking for them after it.
//
// Run 1 saves, then sets everything to other values without a save. Run 2 finds the cloud settings
// as they were set and all else as it was saved; it sets the others again and saves. Run 3 finds
// them, and puts everything back.
#include "judge/restart.h"

#include <cstdlib>

#include "judge/changes.h"
#include "judge/journal.h"
#include "judge/setting.h"
#include "platform/system.h"
#include "platform/vxcloud.h"

namespace judge {

namespace {

std::string memory_file;

// --- Settings that are texts.

struct Text {
    const char* name;
    int (*set)(const char*);
    const char* getter;
    int (*get)(char*);
    bool at_once; // stored by the call itself
};

const Text texts[] = {
    {NAMED(sal_sys_systemName_set), NAMED(sal_sys_systemName_get), false},
    {NAMED(sal_vxcloud_checkin_host_set), NAMED(sal_vxcloud_checkin_host_get), true},
    {NAMED(sal_vxcloud_fallback_host_set), NAMED(sal_vxcloud_fallback_host_get), true},
    {NAMED(sal_vxcloud_connkeeper_host_set), NAMED(sal_vxcloud_connkeeper_host_get), true},
    {NAMED(sal_vxcloud_key_set), NAMED(sal_vxcloud_key_get), true},
    {NAMED(sal_vxcloud_secret_set), NAMED(sal_vxcloud_secret_get), true},
};

const char* const other_text = "judge.example";

std::string read_text(const Text& text) {
    Guarded buffer(256, 0);
    bench->call(text.getter, text.get, buffer.text());
    return buffer.text();
}

void set_text(const Text& text, const std::string& value) {
    bench->works(
        bench->call_as<int, const char*>(std::string(text.name) + "(...)", text.set, value.c_str()),
        "a text is set");
}

// --- Settings that are numbers.

bool is_at_once(const Setting& setting) { return setting.name.compare(0, 12, "sal_vxcloud_") == 0; }

Number read_number(const Setting& setting) {
    Numbers found;
    return setting.read({}, found) == 0 ? found[0] : -1;
}

Number other_than(const Setting& setting, Number present) {
    for (Number value : setting.values[0].good())
        if (value != present)
            return value;
    return present;
}

// --- All of them, as what is remembered: name, value before, value set.

struct Memory {
    std::string phase;
    std::vector<Words> settings;
};

Memory recall() {
    Memory memory;
    Journal file(memory_file);
    for (const auto& line : file.pending()) {
        if (line.second[0] == "phase")
            memory.phase = line.second[1];
        else if (line.second.size() == 3)
            memory.settings.push_back(line.second);
    }
    return memory;
}

void forget() {
    Journal file(memory_file);
    for (const auto& line : file.pending())
        file.strike(line.first);
}

void remember(const Memory& memory) {
    forget();
    Journal file(memory_file);
    file.note({"phase", memory.phase});
    for (const Words& words : memory.settings)
        file.note(words);
}

Memory read_present() {
    Memory memory;
    for (const Text& text : texts)
        memory.settings.push_back({text.name, read_text(text), other_text});
    for (const Setting* setting : simple_settings()) {
        Number present = read_number(*setting);
        memory.settings.push_back(
            {setting->name, std::to_string(present),
             std::to_string(other_than(*setting, present))});
    }
    return memory;
}

// Calls `text` or `number` with each setting's row and the words that are remembered of it.
template <class OnText, class OnNumber>
void each(const Memory& memory, OnText on_text, OnNumber on_number) {
    for (const Words& words : memory.settings) {
        for (const Text& text : texts)
            if (words[0] == text.name)
                on_text(text, words);
        for (const Setting* setting : simple_settings())
            if (words[0] == setting->name)
                on_number(*setting, words);
    }
}

enum { BEFORE = 1, OTHER = 2 }; // words

void set_all(const Memory& memory, std::size_t which, bool also_at_once) {
    each(
        memory,
        [&](const Text& text, const Words& words) {
            if (also_at_once || !text.at_once)
                set_text(text, words[which]);
        },
        [&](const Setting& setting, const Words& words) {
            if (also_at_once || !is_at_once(setting))
                bench->works(
                    setting.write({std::atoll(words[which].c_str())}), "a value of its range");
        });
}

void judge_kept(
    const std::string& name, bool at_once, const std::string& found, const Words& words,
    bool saved) {
    bool kept = at_once || saved;
    const std::string& wanted = words[kept ? OTHER : BEFORE];
    bench->count_case();
    if (found != wanted)
        bench->convict(
            kept ? reason::not_kept : reason::kept_unsaved, name,
            at_once ? "stored at once"
            : saved ? "kept by a save"
                    : "kept by a save alone",
            kept ? "it is not what was set"
                 : "it is not what was saved (was the switch restarted?)");
}

void judge_all(const Memory& memory, bool saved) {
    each(
        memory,
        [&](const Text& text, const Words& words) {
            judge_kept(text.name, text.at_once, read_text(text), words, saved);
        },
        [&](const Setting& setting, const Words& words) {
            judge_kept(
                setting.name, is_at_once(setting), std::to_string(read_number(setting)), words,
                saved);
        });
}

void save() { bench->works(ASK(cmd_conf_startupConfig_save), "writes the startup configuration"); }

void first_run() {
    save();
    Memory memory = read_present();
    memory.phase = "unsaved";
    remember(memory);
    set_all(memory, OTHER, true);
    bench->remark("now restart the switch, and run this again");
}

void second_run(Memory memory) {
    judge_all(memory, false);
    memory.phase = "saved";
    remember(memory);
    set_all(memory, OTHER, false);
    save();
    bench->remark("now restart the switch once more, and run this again");
}

void third_run(const Memory& memory) {
    judge_all(memory, true);
    set_all(memory, BEFORE, true);
    save();
    forget();
    bench->remark("the test is complete: everything was put back, and saved");
}

} // namespace

void remember_restart_in(const std::string& file) { memory_file = file; }

void judge_restart() {
    Memory memory = recall();
    if (memory.phase.empty())
        first_run();
    else if (memory.phase == "unsaved")
        second_run(memory);
    else
        third_run(memory);
}

} // namespace judge
