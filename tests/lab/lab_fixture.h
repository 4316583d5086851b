// A lab cloud of a test's own: in a folder of its own, on ports of its own.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>

#include "lab/cloud.h"
#include "wire_client.h"

namespace lab_test {

using Json = nlohmann::json;

constexpr const char* mac = "AA:BB:CC:DD:EE:FF";

class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

class Lab : public testing::Test {
  protected:
    Lab();
    ~Lab() override;

    void start(); // done by the constructor; again after stop()
    void stop();

    Peer checkin_listener(std::size_t index = 0) const;
    Peer plain_listener() const { return {ports_["http"], ""}; }
    Peer keeper_listener(std::size_t index = 0) const { return {ports_["keeper"][index], ""}; }
    Peer admin_listener() const { return {ports_["admin"], ""}; }

    Answer check_in(const Checkin& checkin) { return talk(checkin_listener(), checkin.text()); }
    // A check-in that reports this sequence number; its reply's document.
    Json report_seqno(std::int64_t seqno);

    Json admin(
        const std::string& method, const std::string& path, const std::string& body = "",
        int expected_status = 200);
    Json admin_get(const std::string& path) { return admin("GET", path); }
    std::string of_switch(const std::string& rest) {
        return std::string("/switches/") + mac + rest;
    }
    // The events of a kind; waits for the first one.
    Json events(const std::string& kind);
    // Waits for the n-th event of a kind.
    Json nth_event(const std::string& kind, std::size_t n);
    std::int64_t counter(const std::string& name);
    void misbehave(const Json& how) { admin("POST", "/misbehave", how.dump(), 201); }

    TempFolder folder_;
    lab::Options options_;
    std::unique_ptr<lab::Cloud> cloud_;
    Json ports_;
};

} // namespace lab_test
