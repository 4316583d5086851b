// The whole lab cloud: its parts and the doors through which they are reached.
#pragma once

#include "lab/admin/service.h"
#include "lab/ca.h"
#include "lab/checkin_service.h"
#include "lab/door.h"
#include "lab/firmware_service.h"
#include "lab/keeper_service.h"
#include "lab/misbehaviour.h"
#include "lab/options.h"
#include "lab/time_service.h"

#include <memory>
#include <string>
#include <vector>

namespace lab {

class Cloud {
  public:
    explicit Cloud(const Options& options);
    ~Cloud();
    Cloud(const Cloud&) = delete;
    Cloud& operator=(const Cloud&) = delete;

    void start(); // opens every door and writes ports.json
    void stop();  // ends every wait and closes every door

    std::string ports_json() const;
    std::string ready_line() const;

  private:
    struct NamedDoor {
        std::string name;
        std::unique_ptr<Door> door;
    };

    DoorPlan checkin_plan(int port);
    DoorPlan plain_plan(int port, const std::string& name, Handler handler);
    Reply answer_plain(const Call& call);
    void add_doors();
    void fit_doors();
    bool has_port(const std::string& door, int port) const; // port 0: any
    std::vector<int> ports(const std::string& name) const;
    std::string addresses(const std::string& name) const;
    std::filesystem::path ports_file() const { return options_.data / "ports.json"; }

    const Options options_;
    Store store_;
    EventLog events_;
    PolicyBox policy_;
    CertificateAuthority authority_;
    Misbehaviours misbehaviours_;
    FirmwareShelf shelf_;
    CheckinService checkin_;
    KeeperService keeper_;
    TimeService time_;
    FirmwareService firmware_;
    AdminService admin_;
    std::mutex doors_mutex_; // over opening and closing
    std::vector<NamedDoor> doors_;
};

} // namespace lab
