// A listening port of the lab: accepts connections on loopback, one thread each, and hands whole
// requests to a handler. A port with certificates speaks TLS to who starts with TLS and plain HTTP
// to everyone else, for a switch uses one "host:port" text for both.
#pragma once

#include "lab/ca.h"
#include "lab/http.h"
#include "lab/misbehaviour.h"

#include <functional>
#include <memory>
#include <string>

namespace lab {

struct DoorPlan {
    int port = 0;           // 0: any free one
    std::string plain_name; // the misbehaviours' word for its plain side
    Handler plain;
    std::string tls_name = {}; // and for its TLS side
    Handler tls = {};
    const CertificateAuthority* authority = nullptr; // none: plain only
    Misbehaviours* misbehaviours = nullptr;          // none: always behaves
    std::function<void(const std::string& text)> on_tls_failure = {};
    std::function<void(const std::string& door, int port, Fault fault)> on_misbehaviour = {};
};

class Door {
  public:
    explicit Door(DoorPlan plan);
    ~Door();
    Door(const Door&) = delete;
    Door& operator=(const Door&) = delete;

    // Throws when the port is taken. The port stays the same over close and open.
    void open();
    // Ends every connection and stops listening. With keep_port the port is held, so that a peer
    // is refused and no other program can take it.
    void close(bool keep_port = false);
    int port() const;

  private:
    class Server;
    std::unique_ptr<Server> server_;
};

} // namespace lab
