// One exchange with the cloud: report, settings, acknowledgement.
#pragma once

extern "C" {

// Sends the report to the check-in host, or where that cannot be reached to the fallback host, and
// applies the reply. May take minutes. The outcome is in the agent's state:
// checkin_connect_establish, checkin_type, checkin_retry_count, setting_from_cloud.
//
// A report that cannot be built for want of memory is not sent, and leaves that state and the marks
// of the ports that were reset as they are.
void api_checkin();
}
