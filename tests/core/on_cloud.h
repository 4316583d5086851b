// A board whose agent has started, with the services of a cloud on the loopback interface.
#pragma once

#include <cstring>
#include <string>

#include "base/state.h"
#include "tests/support/http_stub.h"
#include "tests/support/on_board.h"

class OnCloud : public OnBoard {
  protected:
    OnCloud() {
        proto = "http";
        std::strcpy(macstr, "021b2c3d4e5f");
        std::strcpy(macaddrstr, "02:1B:2C:3D:4E:5F");
        std::strcpy(Checkinstr, "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
        std::strcpy(CheckinHost, cloud.host().c_str());
        std::strcpy(fallback_host, fallback.host().c_str());
        std::strcpy(ConnectionKeeperHost, keeper.host().c_str());
        std::strcpy(gCattr.key, "thekey");
        std::strcpy(gCattr.secret, "thesecret");
    }

    std::string url(const HttpStub& host) const { return "http://" + host.host() + Checkinstr; }

    // The next transfer to that host ends with that libcurl result; for_good: every one from there.
    void fail_transfer(const HttpStub& host, int code, int nth = 1, bool for_good = false) {
        board.faults.plan(
            {sim::Edge::transfer, url(host), static_cast<std::uint64_t>(nth), for_good, code, 0});
    }

    // Lines of the trace that begin so.
    Lines traced(const std::string& prefix) const {
        Lines lines = trace();
        std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(prefix); });
        return lines;
    }
    // Every transfer as CLOUD=result or FALLBACK=result, and every sleep.
    Lines attempts() const;

    // The agent's own console lines from its core, with the process id written PID, without the
    // report's text and without what the transport tells.
    Lines core_console() const;

    HttpStub cloud;
    HttpStub fallback;
    HttpStub keeper;
};

// An answer with status 200 and that body.
inline HttpAnswer reply(const std::string& body) {
    HttpAnswer answer;
    answer.body = body;
    return answer;
}
