// Switching the voice VLAN on and off, and the edits of the table of telephone vendors.
#include "sections/voice_vlan.h"

#include <stdio.h>
#include <string.h>

#include "base/errors.h"
#include "platform/system.h"
#include "platform/types.h"
#include "platform/util.h"
#include "platform/voice_vlan.h"
#include "sections/section.h"

namespace {

struct Settings {
    int mode;
    int vid;
    VoiceVlanQos qos;
    int aging;
    int remark;
};

// A place of the vendor table with its description.
struct Vendor {
    VoiceVlanOui entry;
    char description[VOICE_VLAN_DESCRIPTION_SIZE];
};

int read_vendor(int index, Vendor* vendor) {
    *vendor = {};
    return sal_vlan_voiceVlanOui_get(index, &vendor->entry, vendor->description);
}

// --- Report.

int read_settings(Settings* now) {
    if (int code = sal_vlan_voiceVlanState_get(&now->mode))
        return code;
    if (int code = sal_vlan_voiceVid_get(&now->vid))
        return code;
    if (int code = sal_vlan_voiceVlanQos_get(&now->qos))
        return code;
    if (int code = sal_vlan_voiceVlanAging_get(&now->aging))
        return code;
    return sal_vlan_voiceVlan1pRemarkEnable_get(&now->remark);
}

void report_vendor(cJSON* list, int index, const Vendor& vendor) {
    const uint8_t* oui = vendor.entry.oui;
    char address[sizeof "FF:FF:FF"];
    snprintf(address, sizeof address, "%02X:%02X:%02X", oui[0], oui[1], oui[2]);
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", index);
    addJsonObjectStringItem(item, "address", address);
    addJsonObjectStringItem(item, "description", vendor.description);
    addJsonArrayItem(list, item);
}

int report_vendors(cJSON* list) {
    for (int index = 0; index < VOICE_VLAN_OUIS; ++index) {
        Vendor vendor;
        if (int code = read_vendor(index, &vendor))
            return record_error(code);
        if (vendor.entry.in_use)
            report_vendor(list, index, vendor);
    }
    return 0;
}

} // namespace

int vxc_voice_vlan_get(cJSON* report) {
    Settings now = {};
    if (int code = read_settings(&now))
        return record_error(code);
    cJSON* vlan = attachJsonObject(report, "vlan");
    cJSON* voice = attachJsonObject(vlan, "voice");
    addJsonObjectIntItem(voice, "mode", now.mode);
    addJsonObjectIntItem(voice, "vlan_id", now.vid);
    addJsonObjectBoolItem(voice, "802.1p_remark", now.remark);
    addJsonObjectIntItem(voice, "remark_cos", now.qos.remark_cos);
    addJsonObjectIntItem(voice, "aging_time", now.aging);
    return report_vendors(attachJsonArray(voice, "oui"));
}

// --- The vendor table.

namespace {

// Takes over what is given of the two; the OUI is the first half of a MAC address.
int change_vendor(Vendor* vendor, const char* address, const char* description) {
    if (address) {
        uint8_t mac[MAC_ADDRESS_SIZE];
        if (int code = sys_util_str2Mac(address, mac))
            return code;
        memcpy(vendor->entry.oui, mac, OUI_SIZE);
    }
    if (!description)
        return 0;
    return sys_util_namestrcpy(vendor->description, description, VOICE_VLAN_DESCRIPTION_SIZE - 1);
}

// Whether a place of the table other than `except` holds this OUI. Descriptions do not matter.
int oui_is_held(const uint8_t* oui, int except, bool* held) {
    for (int index = 0; index < VOICE_VLAN_OUIS && !*held; ++index) {
        Vendor vendor;
        if (index == except)
            continue;
        if (int code = read_vendor(index, &vendor))
            return code;
        *held = vendor.entry.in_use && !memcmp(vendor.entry.oui, oui, OUI_SIZE);
    }
    return 0;
}

void mark_used(Vendor* vendor) {
    memset(vendor->entry.mask, 0xFF, OUI_SIZE);
    vendor->entry.in_use = 1;
}

} // namespace

int oui_add(const cJSON* edit) {
    const char* address = getJsonStringValueForKey(edit, "address");
    const char* description = getJsonStringValueForKey(edit, "description");
    if (!address || !description)
        return 0;
    Vendor vendor = {};
    bool held = false;
    if (int code = change_vendor(&vendor, address, description))
        return record_error(code);
    if (int code = oui_is_held(vendor.entry.oui, VOICE_VLAN_OUIS, &held))
        return record_error(code);
    if (held)
        return 0;
    mark_used(&vendor);
    if (int code = sal_vlan_voiceVlanOui_add(&vendor.entry, vendor.description))
        return record_error(code);
    return 0;
}

int oui_update(const cJSON* edit) {
    int id = 0;
    if (!read_int(edit, "id", &id))
        return 0;
    const char* address = getJsonStringValueForKey(edit, "address");
    const char* description = getJsonStringValueForKey(edit, "description");
    Vendor vendor;
    bool held = false;
    if (int code = read_vendor(id, &vendor))
        return record_error(code);
    if (int code = change_vendor(&vendor, address, description))
        return record_error(code);
    if (int code = oui_is_held(vendor.entry.oui, id, &held))
        return record_error(code);
    if (held)
        return 0;
    mark_used(&vendor);
    if (int code = sal_vlan_voiceVlanOui_set(id, &vendor.entry, vendor.description))
        return record_error(code);
    return 0;
}

int oui_delete(const cJSON* edit) {
    int id = 0;
    if (!read_int(edit, "id", &id))
        return 0;
    Vendor vendor;
    if (int code = read_vendor(id, &vendor))
        return record_error(code);
    vendor.entry.in_use = 0;
    if (int code = sal_vlan_voiceVlanOui_set(id, &vendor.entry, vendor.description))
        return record_error(code);
    return 0;
}

namespace {

// What an edit fails with stands in the error list, and the next one follows.
void edit_vendor(const cJSON* edit) {
    int method = -1;
    read_int(edit, "method", &method);
    switch (method) {
    case METHOD_DELETE:
        oui_delete(edit);
        break;
    case METHOD_ADD:
        oui_add(edit);
        break;
    case METHOD_CHANGE:
        oui_update(edit);
        break;
    default:
        break;
    }
}

// --- Settings.

int read_mode(const cJSON* voice, int* mode) {
    if (!read_int(voice, "mode", mode))
        return sal_vlan_voiceVlanState_get(mode);
    if (*mode != 1 && *mode != 2)
        *mode = VOICE_VLAN_OFF;
    return 0;
}

int read_vid(const cJSON* voice, int* vid) {
    return read_int(voice, "vlan_id", vid) ? 0 : sal_vlan_voiceVid_get(vid);
}

// The id must be there before the voice VLAN goes on, and may go only once it is off.
int switch_on(int mode, int vid) {
    if (int code = sal_vlan_voiceVid_set(vid))
        return code;
    return sal_vlan_voiceVlanState_set(mode);
}

int switch_off() {
    int ports = sys_logic_port_num_ret();
    for (int port = 0; port < ports; ++port) {
        if (int code = sal_vlan_portVoiceVlanEnable_set(port, 0))
            record_error(code);
    }
    if (int code = sal_vlan_voiceVlanState_set(VOICE_VLAN_OFF))
        return code;
    return sal_vlan_voiceVid_set(VOICE_VLAN_NO_VID);
}

int apply_details(const cJSON* voice, const VoiceVlanQos& qos) {
    if (int code = apply_bool(voice, "802.1p_remark", sal_vlan_voiceVlan1pRemarkEnable_set))
        return code;
    auto set_cos = [&qos](int cos) { return sal_vlan_voiceVlanQos_set(qos.queue, qos.dscp, cos); };
    if (int code = apply_int(voice, "remark_cos", set_cos))
        return code;
    return apply_int(voice, "aging_time", sal_vlan_voiceVlanAging_set);
}

int apply_settings(const cJSON* voice, const VoiceVlanQos& qos) {
    int mode = 0, vid = 0;
    if (int code = read_mode(voice, &mode))
        return code;
    if (int code = read_vid(voice, &vid))
        return code;
    if (mode == VOICE_VLAN_OFF)
        return switch_off();
    if (int code = switch_on(mode, vid))
        return code;
    return apply_details(voice, qos);
}

} // namespace

int vxc_voice_vlan_set(const cJSON* vlan) {
    VoiceVlanQos qos = {};
    if (int code = sal_vlan_voiceVlanQos_get(&qos))
        return record_error(code);
    const cJSON* voice = getJsonObjectForKey(vlan, "voice");
    if (!voice)
        return 0;
    if (int code = apply_settings(voice, qos))
        return record_error(code);
    const cJSON* edit = getJsonChild(getJsonArrayForKey(voice, "oui"));
    for (; edit; edit = getJsonNext(edit))
        edit_vendor(edit);
    return 0;
}
