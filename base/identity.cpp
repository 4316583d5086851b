// The switch's MAC in the two forms that the cloud and the stored account know.
#include "base/identity.h"

#include <stdint.h>
#include <stdio.h>

#include "base/state.h"
#include "platform/system.h"
#include "platform/types.h"

void name_switch() {
    uint8_t mac[MAC_ADDRESS_SIZE] = {};
    sal_sys_macAddr_get(mac);
    snprintf(
        macstr, sizeof macstr, "%02x%02x%02x%02x%02x%02x", mac[0], mac[1], mac[2], mac[3], mac[4],
        mac[5]);
    snprintf(
        macaddrstr, sizeof macaddrstr, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2],
        mac[3], mac[4], mac[5]);
}

void format_checkin_path() {
    snprintf(Checkinstr, sizeof Checkinstr, "/%s/%s/checkin", "cloud-switch", macaddrstr);
}
