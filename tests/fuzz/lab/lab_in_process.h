// The services of a lab cloud without its ports: a request is served on the calling thread.
#pragma once

#include <string>

#include "lab/admin/service.h"
#include "lab/checkin_service.h"
#include "lab/firmware.h"
#include "lab/keeper_service.h"
#include "lab/listener.h"
#include "lab/time_service.h"

namespace lab_fuzz {

constexpr const char* mac = "AA:BB:CC:DD:EE:FF"; // of the switch that is registered

class InProcess {
  public:
    explicit InProcess(const std::string& folder);

    // What a check-in port and the admin port answer to these bytes.
    std::string check_in(const std::string& request) { return ask(check_in_port_, request); }
    std::string admin(const std::string& request) { return ask(admin_port_, request); }

  private:
    lab::ListenerPlan plan_check_in();
    lab::ListenerPlan plan_admin();
    static std::string ask(lab::Listener& port, const std::string& request);

    lab::Store store_;
    lab::Overview overview_;
    lab::EventLog events_;
    lab::PolicyBox policy_;
    lab::Misbehaviours misbehaviours_;
    lab::ImageFolder images_;
    lab::CheckinService checkin_;
    lab::KeeperService keeper_;
    lab::TimeService time_;
    lab::FirmwareService firmware_;
    lab::AdminService admin_;
    lab::Listener check_in_port_;
    lab::Listener admin_port_;
};

// The lab of the process, which is a new one after some thousand requests, for it remembers them.
InProcess& lab_of_the_hour();

} // namespace lab_fuzz
