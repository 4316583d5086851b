// Whatever of the agent outlives a call, set as it stands in the program.
#include "tests/support/fresh_agent.h"

#include <cstring>
#include <initializer_list>

#include "base/debug.h"
#include "base/errors.h"
#include "base/state.h"
#include "sections/acl/bindings.h"
#include "sections/dark_mode.h"
#include "sections/diagnostic.h"
#include "sections/firmware_upgrade.h"

void reset_agent() {
    CheckinInterval = 300;
    proto = "https";
    for (char* text : {CheckinHost, fallback_host, Checkinstr})
        std::memset(text, 0, 256);
    std::memset(ConnectionKeeperHost, 0, sizeof ConnectionKeeperHost);
    std::memset(macstr, 0, sizeof macstr);
    std::memset(macaddrstr, 0, sizeof macaddrstr);
    gCattr = {};
    checkin_connect_establish = checkin_connect_retry = checkin_retry_count = 0;
    checkin_timeout = checkin_connect_timeout = 120;
    checkin_type = CHECKIN_ANY_ADDRESS;
    setting_from_cloud = connection_url_change = debug_flag = 0;
    thread_curl = nullptr;
    std::memset(bind_recover_names, 0, sizeof bind_recover_names);
    acl_recover_bind = 0;
    std::memset(flags, 0, sizeof flags);
    saved_led_mode = 7;
    traceroute_status = ping_status = cable_test_pending = uid = 0;
    cable_result = {};
    clear_errors();
}
