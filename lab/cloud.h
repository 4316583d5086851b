// The whole lab cloud: its parts and the listeners through which they are reached.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lab/admin/service.h"
#include "lab/ca.h"
#include "lab/checkin_service.h"
#include "lab/firmware.h"
#include "lab/keeper_service.h"
#include "lab/listener.h"
#include "lab/misbehaviour.h"
#include "lab/options.h"
#include "lab/time_service.h"

namespace lab {

// Stands between the listeners and the services, for whoever wants to see or change what passes.
// `listener` is checkin, plain or keeper; `serve` is what would have answered.
using Between =
    std::function<Reply(const std::string& listener, const Call& call, const Handler& serve)>;

class Cloud {
  public:
    explicit Cloud(const Options& options, Between between = {});
    ~Cloud();
    Cloud(const Cloud&) = delete;
    Cloud& operator=(const Cloud&) = delete;

    void start(); // opens every listener and writes ports.json
    void stop();  // ends every wait and closes every listener

    std::string ports_json() const;
    std::string ready_line() const;

  private:
    struct NamedListener {
        std::string name;
        std::unique_ptr<Listener> listener;
    };

    ListenerPlan plan_checkin(int port);
    Handler put_between(const std::string& name, Handler serve) const;
    ListenerPlan plan_plain(int port, const std::string& name, Handler handler);
    Reply answer_plain(const Call& call);
    void add_listeners();
    void fit_listeners();
    bool has_port(const std::string& listener, int port) const; // port 0: any
    std::vector<int> ports(const std::string& name) const;
    std::string addresses(const std::string& name) const;
    std::filesystem::path ports_file() const { return options_.data / "ports.json"; }

    const Options options_;
    const Between between_;
    Store store_;
    Overview overview_;
    EventLog events_;
    PolicyBox policy_;
    CertificateAuthority authority_;
    Misbehaviours misbehaviours_;
    ImageFolder images_;
    CheckinService checkin_;
    KeeperService keeper_;
    TimeService time_;
    FirmwareService firmware_;
    AdminService admin_;
    std::mutex listeners_mutex_; // over opening and closing
    std::vector<NamedListener> listeners_;
};

} // namespace lab
