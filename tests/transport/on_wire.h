// A board with an account and a cloud to talk to on the loopback interface.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

#include "base/debug.h"
#include "base/state.h"
#include "tests/support/http_stub.h"
#include "tests/support/on_board.h"
#include "transport/api_client.h"

// What the process writes to its standard error output, where libcurl tells about transfers, while
// this lives. In memory, for files are the board's.
class ErrorOutput {
  public:
    ErrorOutput() : shown_(dup(STDERR_FILENO)), kept_(memfd_create("stderr", MFD_CLOEXEC)) {
        dup2(kept_, STDERR_FILENO);
    }
    ~ErrorOutput() {
        dup2(shown_, STDERR_FILENO);
        close(shown_);
        close(kept_);
    }
    ErrorOutput(const ErrorOutput&) = delete;
    ErrorOutput& operator=(const ErrorOutput&) = delete;

    std::string text() const {
        std::string all(static_cast<std::size_t>(lseek(kept_, 0, SEEK_CUR)), '\0');
        all.resize(static_cast<std::size_t>(pread(kept_, all.data(), all.size(), 0)));
        return all;
    }

  private:
    int shown_;
    int kept_;
};

class OnWire : public OnBoard {
  protected:
    OnWire() {
        std::strcpy(macaddrstr, "AA:BB:CC:DD:EE:FF");
        std::strcpy(macstr, "aabbccddeeff");
        std::strcpy(fallback_host, cloud.host().c_str());
        checkin_timeout = checkin_connect_timeout = 20;
    }

    struct Call {
        std::string protocol = "http";
        std::string host = {};
        std::string path = "/p";
        std::string method = "POST";
        std::string type = "application/json";
        const char* body = "{}";
        std::int32_t length = 2;
        const char* extra = nullptr;
        std::string key = "thekey";
    };

    std::int32_t call(const Call& c, api_reply* reply) {
        std::string host = c.host.empty() ? cloud.host() : c.host;
        return api_call(
            c.protocol.c_str(), host.c_str(), c.path.c_str(), c.method.c_str(), c.type.c_str(),
            c.body, c.length, reply, c.extra, c.key.c_str(), "thesecret");
    }
    std::int32_t call(const Call& c) {
        api_reply discard = {REPLY_DISCARD, {nullptr}, 0};
        return call(c, &discard);
    }
    std::int32_t call() { return call(Call()); }

    // The next transfer to that URL ends with that libcurl result.
    void fail_transfer(const std::string& url, int code) {
        board.faults.plan({sim::Edge::transfer, url, 1, false, code, 0});
    }

    // Returns what went to the standard error output.
    template <typename Action> std::string with_debug(Action action) {
        ErrorOutput output;
        debug_flag = 1;
        action();
        debug_flag = 0;
        return output.text();
    }

    HttpStub cloud;
};
