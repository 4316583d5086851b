// See settings.h. For a switch of twelve logical ports.
#include "tests/torture/settings.h"

const char* const whole_settings = R"({
  "system": {
    "summary_info": {"device_name": "Tortured"},
    "jumbo_frames": {"size": 9000},
    "cloud": {"checkin_interval": 600, "fallback_host": "localhost:1", "checkin_host": "localhost:2",
              "connkeeper_host": "localhost:3", "key": "k", "secret": "s", "timeout": 30},
    "firmware": {"upgrade_partition": 2, "upgrade_url": "/flash/image0", "active_partition": 2}
  }
})";
