// The admin interface: JSON over plain HTTP for people, scripts and tests on the same machine.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lab/events.h"
#include "lab/firmware.h"
#include "lab/http.h"
#include "lab/keeper_service.h"
#include "lab/misbehaviour.h"
#include "lab/overview.h"
#include "lab/policy.h"

namespace lab {

struct AdminParts {
    Store& store;
    Overview& overview;
    EventLog& events;
    PolicyBox& policy;
    KeeperService& keeper;
    Misbehaviours& misbehaviours;
    ImageFolder& images;
    std::function<std::string()> ports;                                  // the text of ports.json
    std::function<bool(const std::string& listener, int port)> has_port; // port 0: any
    std::function<void()> misbehaviour_changed; // opens or closes listeners to fit
};

class AdminService {
  public:
    explicit AdminService(AdminParts parts) : parts_(std::move(parts)) {}
    static std::size_t body_limit(const Call& call); // none for whom answer() will refuse
    Reply answer(const Call& call);

  private:
    AdminParts parts_;
};

} // namespace lab
