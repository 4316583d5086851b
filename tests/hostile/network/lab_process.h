// The lab cloud as a program of its own, with an account for the simulated switch.
#pragma once

#include <sys/types.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/temp_folder.h"

class LabProcess {
  public:
    LabProcess();
    ~LabProcess();
    LabProcess(const LabProcess&) = delete;
    LabProcess& operator=(const LabProcess&) = delete;

    // Hosts as a switch is given them: two for check-ins, the second of which tells the time.
    std::string checkin_host(int index) const { return host(ports_["https"][index]); }
    int checkin_port(int index) const { return ports_["https"][index]; }
    std::string keeper_host() const { return host(ports_["keeper"][0]); }
    int keeper_port() const { return ports_["keeper"][0]; }
    std::string trust_folder() const { return ports_["ca_dir"]; }

    // The admin interface; throws where it refuses.
    nlohmann::json
    ask(const std::string& method, const std::string& path, const std::string& body = "") const;
    void misbehave(const nlohmann::json& order) const { ask("POST", "/misbehave", order.dump()); }
    void behave() const { ask("DELETE", "/misbehave"); }
    int checkins() const; // accepted so far

  private:
    static std::string host(int port) { return "127.0.0.1:" + std::to_string(port); }
    void wait_for_ports();

    TempFolder folder_;
    pid_t process_;
    nlohmann::json ports_;
};
