// The voice VLAN.
#include "platform/voice_vlan.h"

#include <cstring>

#include "judge/changes.h"
#include "judge/family.h"
#include "platform/vlan.h"

namespace judge {

namespace {

enum { MODES = 3, FIRST_VID = 1, LAST_VID = 4094, LAST_QUEUE = 7, LAST_DSCP = 63, LAST_COS = 7 };

const Parameter place = within("index", 0, VOICE_VLAN_OUIS - 1);
const Parameter mode = within("mode", VOICE_VLAN_OFF, MODES - 1);
const Parameter aging = within("minutes", 30, 65536);

Parameter any_vid() {
    Parameter vid = within("vid", FIRST_VID, VOICE_VLAN_NO_VID);
    vid.says = "1 to 4094, or 4095 for none";
    return vid;
}

std::string fault_of(const VoiceVlanQos& qos) {
    for (const std::string& fault :
         {outside("queue", qos.queue, 0, LAST_QUEUE), outside("dscp", qos.dscp, 0, LAST_DSCP),
          outside("remark_cos", qos.remark_cos, 0, LAST_COS)})
        if (!fault.empty())
            return fault;
    return "";
}

std::string fault_of(const VoiceVlanOui& entry) { return outside("in_use", entry.in_use, 0, 1); }

// What a free place holds besides its mark is nobody's affair.
int oui_get(int index, VoiceVlanOui* entry, char* description) {
    int code = sal_vlan_voiceVlanOui_get(index, entry, description);
    if (code == 0 && entry->in_use == 0) {
        *entry = {};
        std::memset(description, 0, VOICE_VLAN_DESCRIPTION_SIZE);
    }
    return code;
}

Operations reads() {
    return {
        {NAMED(sal_vlan_voiceVlanState_get), {gives(mode)}},
        {NAMED(sal_vlan_voiceVid_get), {gives_number("vid", FIRST_VID, VOICE_VLAN_NO_VID)}},
        {NAMED(sal_vlan_voiceVlan1pRemarkEnable_get), {gives_flag("enable")}},
        {NAMED(sal_vlan_voiceVlanQos_get), {gives_record<VoiceVlanQos>("qos", fault_of)}},
        {NAMED(sal_vlan_voiceVlanAging_get), {gives_number("minutes", 30, 65536)}},
        {NAMED(sal_vlan_portVoiceVlanEnable_get), {port, gives_flag("enable")}},
        {NAMED(sal_vlan_portVoiceVlancosMode_get), {port, gives_flag("mode")}},
        {"sal_vlan_voiceVlanOui_get",
         oui_get,
         {place, gives_record<VoiceVlanOui>("entry", fault_of),
          gives_text("description", VOICE_VLAN_DESCRIPTION_SIZE)}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_vlan_voiceVlan1pRemarkEnable_set),
         {},
         {flag("enable")},
         outputs(sal_vlan_voiceVlan1pRemarkEnable_get)},
        {NAMED(sal_vlan_voiceVlanQos_set),
         {},
         {within("queue", 0, LAST_QUEUE), within("dscp", 0, LAST_DSCP),
          within("remark_cos", 0, LAST_COS)},
         members(
             sal_vlan_voiceVlanQos_get, &VoiceVlanQos::queue, &VoiceVlanQos::dscp,
             &VoiceVlanQos::remark_cos)},
        {NAMED(sal_vlan_voiceVlanAging_set), {}, {aging}, outputs(sal_vlan_voiceVlanAging_get)},
        {NAMED(sal_vlan_portVoiceVlanEnable_set),
         {port},
         {flag("enable")},
         outputs(sal_vlan_portVoiceVlanEnable_get)},
        {NAMED(sal_vlan_portVoiceVlancosMode_set),
         {port},
         {flag("mode")},
         outputs(sal_vlan_portVoiceVlancosMode_get)},
        // The two that depend on each other: an id may be one of a VLAN that the library wants to
        // exist, and no id may be taken away from a voice VLAN that is on.
        Setting(NAMED(sal_vlan_voiceVid_set), {}, {any_vid()}, outputs(sal_vlan_voiceVid_get))
            .unless_refused(),
        Setting(
            NAMED(sal_vlan_voiceVlanState_set), {}, {mode}, outputs(sal_vlan_voiceVlanState_get))
            .unless_refused(),
    };
}

void agreement() {
    int state = VOICE_VLAN_OFF;
    int vid = VOICE_VLAN_NO_VID;
    if (ASK(sal_vlan_voiceVlanState_get, &state) == 0 && ASK(sal_vlan_voiceVid_get, &vid) == 0)
        bench->holds(
            state == VOICE_VLAN_OFF || vid != VOICE_VLAN_NO_VID, reason::disagrees,
            "the id must be set before the voice VLAN is switched on",
            "state " + std::to_string(state) + " without an id");
}

// --- Changes.

int free_place() {
    for (int index = 0; index < VOICE_VLAN_OUIS; ++index) {
        VoiceVlanOui entry = {};
        char description[VOICE_VLAN_DESCRIPTION_SIZE] = "";
        if (sal_vlan_voiceVlanOui_get(index, &entry, description) == 0 && !entry.in_use)
            return index;
    }
    return -1;
}

bool holds_entry(int index, const VoiceVlanOui& wanted, const std::string& description) {
    VoiceVlanOui entry = {};
    char text[VOICE_VLAN_DESCRIPTION_SIZE] = "";
    return ASK(sal_vlan_voiceVlanOui_get, index, &entry, text) == 0 && entry.in_use == 1 &&
           std::memcmp(entry.oui, wanted.oui, OUI_SIZE) == 0 &&
           std::memcmp(entry.mask, wanted.mask, OUI_SIZE) == 0 && description == text;
}

void judge_place(int index) {
    const VoiceVlanOui entry = {{0x02, 0xAB, 0xCD}, {0xFF, 0xFF, 0xF0}, {}, 1};
    const std::string longest(VOICE_VLAN_DESCRIPTION_SIZE - 1, 'j');
    Undo undo("sal_vlan_voiceVlanOui_set", {std::to_string(index)});
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_vlan_voiceVlanOui_set, index, &entry, (longest + "j").c_str()),
            "a text of at most 32 characters");
        for (int wrong : {-1, VOICE_VLAN_OUIS + 0})
            bench->refuses(ASK(sal_vlan_voiceVlanOui_set, wrong, &entry, "judge"), place.says);
    });
    for (const std::string& description : {longest, std::string("judge")}) {
        bench->works(
            ASK(sal_vlan_voiceVlanOui_set, index, &entry, description.c_str()), "fills a place");
        bench->holds(
            holds_entry(index, entry, description), reason::not_stored, "the place holds the entry",
            "another");
    }
    VoiceVlanOui unused = entry;
    unused.in_use = 0;
    bench->works(ASK(sal_vlan_voiceVlanOui_set, index, &unused, ""), "_set frees the place");
    bench->works(ASK(sal_vlan_voiceVlanOui_add, &entry, "judge"), "_add takes the first free one");
    bench->holds(
        holds_entry(index, entry, "judge"), reason::not_stored, "_add takes the first free one",
        "it is not in place " + std::to_string(index));
}

// Filled to the last place, the table refuses one more.
void judge_full_table() {
    const VoiceVlanOui entry = {{0x02, 0xAB, 0xCE}, {0xFF, 0xFF, 0xFF}, {}, 1};
    std::vector<std::unique_ptr<Undo>> undos;
    for (int index = free_place(); index >= 0; index = free_place()) {
        undos.push_back(std::make_unique<Undo>(
            "sal_vlan_voiceVlanOui_set", std::vector<std::string>{std::to_string(index)}));
        if (!bench->works(
                ASK(sal_vlan_voiceVlanOui_add, &entry, "judge"), "there is a free place") ||
            !bench->holds(
                holds_entry(index, entry, "judge"), reason::not_stored,
                "_add takes the first free one", "place " + std::to_string(index) + " is free"))
            return;
    }
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_vlan_voiceVlanOui_add, &entry, "judge"), "fails without a free place");
    });
}

void judge_mode(int wanted) {
    int found = -1;
    bench->works(ASK(sal_vlan_voiceVlanState_set, wanted), "off, or one of the switch's two modes");
    std::string call = Bench::last();
    ASK(sal_vlan_voiceVlanState_get, &found);
    bench->count_case();
    if (found != wanted)
        bench->convict(
            reason::not_stored, call, "what was set is read back", "mode " + std::to_string(found));
}

// The id and the mode need each other.
void judge_state(int vid, int state, int present) {
    // The last is undone first. With no id there is no mode, and with a mode no id is taken away.
    Undo take_vid_away("sal_vlan_voiceVid_set", {std::to_string(present)});
    Undo restore_state("sal_vlan_voiceVlanState_set", {std::to_string(state)});
    Undo restore_vid("sal_vlan_voiceVid_set", {std::to_string(present)});
    bench->works(ASK(sal_vlan_voiceVid_set, vid), "the id of a VLAN that exists");
    for (int wanted = MODES - 1; wanted > VOICE_VLAN_OFF; --wanted) {
        judge_mode(wanted);
        unchanged(reads(), [&] {
            bench->refuses(
                ASK(sal_vlan_voiceVid_set, int{VOICE_VLAN_NO_VID}),
                "it can be taken away only once the voice VLAN is off");
        });
    }
    judge_mode(VOICE_VLAN_OFF);
    bench->works(
        ASK(sal_vlan_voiceVid_set, int{VOICE_VLAN_NO_VID}), "it can be taken away once it is off");
    unchanged(reads(), [&] {
        bench->refuses(
            ASK(sal_vlan_voiceVlanState_set, 1),
            "the id must be set before the voice VLAN is switched on");
    });
}

void judge_id_and_mode() {
    std::uint32_t vid = 0;
    int state = 0;
    int present = 0;
    if (sal_vlan_mgmtVid_get(&vid) == 0 && ASK(sal_vlan_voiceVlanState_get, &state) == 0 &&
        ASK(sal_vlan_voiceVid_get, &present) == 0)
        back_as_before(reads(), [&] { judge_state(static_cast<int>(vid), state, present); });
}

void changes() {
    judge_id_and_mode();
    int index = free_place();
    if (index < 0)
        return bench->remark("every place of the OUI table is in use: none is changed");
    back_as_before(reads(), [&] { judge_place(index); });
    back_as_before(reads(), judge_full_table);
}

} // namespace

const Family voice_vlan_family = {"voice_vlan", reads, agreement, settings, changes};

} // namespace judge
