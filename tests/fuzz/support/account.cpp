// Names would be looked up; an address needs no look-up.
#include "tests/fuzz/support/account.h"

#include <cstring>
#include <initializer_list>

#include "base/state.h"

void start_agent() {
    proto = "http";
    std::strcpy(macstr, "021b2c3d4e5f");
    std::strcpy(macaddrstr, "02:1B:2C:3D:4E:5F");
    std::strcpy(Checkinstr, "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
    for (char* host : {CheckinHost, fallback_host, ConnectionKeeperHost})
        std::strcpy(host, "127.0.0.1:80");
    std::strcpy(gCattr.key, "thekey");
    std::strcpy(gCattr.secret, "thesecret");
}
