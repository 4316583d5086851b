// The voice VLAN section; see voice_vlan.h.
#include "sections/voice_vlan.h"

#include <stdio.h>
#include <string.h>

#include "base/errors.h"
#include "platform/system.h"
#include "platform/types.h"
#include "platform/util.h"
#include "platform/voice_vlan.h"

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

int vendor_read(int index, Vendor* vendor) {
    *vendor = {};
    return sal_vlan_voiceVlanOui_get(index, &vendor->entry, vendor->description);
}

// --- Report.

int settings_read(Settings* now) {
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

void vendor_report(cJSON* list, int index, const Vendor& vendor) {
    const uint8_t* oui = vendor.entry.oui;
    char address[sizeof "FF:FF:FF"];
    snprintf(address, sizeof address, "%02X:%02X:%02X", oui[0], oui[1], oui[2]);
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "id", index);
    addJsonObjectStringItem(item, "address", address);
    addJsonObjectStringItem(item, "description", vendor.description);
    addJsonArrayItem(list, item);
}

int vendors_report(cJSON* list) {
    for (int index = 0; index < VOICE_VLAN_OUIS; ++index) {
        Vendor vendor;
        if (int code = vendor_read(index, &vendor))
            return record_error(code);
        if (vendor.entry.in_use)
            vendor_report(list, index, vendor);
    }
    return 0;
}

} // namespace

int vxc_voice_vlan_get(cJSON* report) {
    Settings now = {};
    if (int code = settings_read(&now))
        return record_error(code);
    cJSON* vlan = attachJsonObject(report, "vlan");
    cJSON* voice = attachJsonObject(vlan, "voice");
    addJsonObjectIntItem(voice, "mode", now.mode);
    addJsonObjectIntItem(voice, "vlan_id", now.vid);
    addJsonObjectBoolItem(voice, "802.1p_remark", now.remark);
    addJsonObjectIntItem(voice, "remark_cos", now.qos.remark_cos);
    addJsonObjectIntItem(voice, "aging_time", now.aging);
    return vendors_report(attachJsonArray(voice, "oui"));
}

// --- The vendor table.

namespace {

// Takes over what is given of the two; the OUI is the first half of a MAC address.
int vendor_change(Vendor* vendor, const char* address, const char* description) {
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
        if (int code = vendor_read(index, &vendor))
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
    if (int code = vendor_change(&vendor, address, description))
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
    int found;
    int id = getJsonIntValueForKey(edit, "id", &found);
    if (!found)
        return 0;
    const char* address = getJsonStringValueForKey(edit, "address");
    const char* description = getJsonStringValueForKey(edit, "description");
    Vendor vendor;
    bool held = false;
    if (int code = vendor_read(id, &vendor))
        return record_error(code);
    if (int code = vendor_change(&vendor, address, description))
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
    int found;
    int id = getJsonIntValueForKey(edit, "id", &found);
    if (!found)
        return 0;
    Vendor vendor;
    if (int code = vendor_read(id, &vendor))
        return record_error(code);
    vendor.entry.in_use = 0;
    if (int code = sal_vlan_voiceVlanOui_set(id, &vendor.entry, vendor.description))
        return record_error(code);
    return 0;
}

namespace {

enum { METHODS = 3 }; // 0 deletes, 1 adds, 2 updates

int (*const vendor_edits[METHODS])(const cJSON*) = {oui_delete, oui_add, oui_update};

void vendors_edit(const cJSON* edits) {
    for (const cJSON* edit = getJsonChild(edits); edit; edit = getJsonNext(edit)) {
        int found;
        int method = getJsonIntValueForKey(edit, "method", &found);
        if (found && method >= 0 && method < METHODS)
            vendor_edits[method](edit);
    }
}

// --- Settings.

int wanted_mode(const cJSON* voice, int* mode) {
    int found;
    *mode = getJsonIntValueForKey(voice, "mode", &found);
    if (!found)
        return sal_vlan_voiceVlanState_get(mode);
    if (*mode != 1 && *mode != 2)
        *mode = VOICE_VLAN_OFF;
    return 0;
}

int wanted_vid(const cJSON* voice, int* vid) {
    int found;
    *vid = getJsonIntValueForKey(voice, "vlan_id", &found);
    return found ? 0 : sal_vlan_voiceVid_get(vid);
}

// The VLAN must stand before the voice VLAN goes on, and may go only once it is off.
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

int details_set(const cJSON* voice, const VoiceVlanQos& qos) {
    int found;
    int remark = getJsonBoolValueForKey(voice, "802.1p_remark", &found);
    if (found) {
        if (int code = sal_vlan_voiceVlan1pRemarkEnable_set(remark != JSON_FALSE))
            return code;
    }
    int cos = getJsonIntValueForKey(voice, "remark_cos", &found);
    if (found) {
        if (int code = sal_vlan_voiceVlanQos_set(qos.queue, qos.dscp, cos))
            return code;
    }
    int aging = getJsonIntValueForKey(voice, "aging_time", &found);
    return found ? sal_vlan_voiceVlanAging_set(aging) : 0;
}

int settings_set(const cJSON* voice, const VoiceVlanQos& qos) {
    int mode, vid;
    if (int code = wanted_mode(voice, &mode))
        return code;
    if (int code = wanted_vid(voice, &vid))
        return code;
    if (mode == VOICE_VLAN_OFF)
        return switch_off();
    if (int code = switch_on(mode, vid))
        return code;
    return details_set(voice, qos);
}

} // namespace

int vxc_voice_vlan_set(const cJSON* vlan) {
    VoiceVlanQos qos = {};
    if (int code = sal_vlan_voiceVlanQos_get(&qos))
        return record_error(code);
    const cJSON* voice = getJsonObjectForKey(vlan, "voice");
    if (!voice)
        return 0;
    if (int code = settings_set(voice, qos))
        return record_error(code);
    vendors_edit(getJsonObjectForKey(voice, "oui"));
    return 0;
}
