// Starting, stopping and asking a lab cloud.
#include "lab_fixture.h"

#include <cstdlib>

namespace lab_test {

TempFolder::TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lab-test-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
}

TempFolder::~TempFolder() { std::filesystem::remove_all(path_); }

Lab::Lab() {
    options_.data = folder_.path();
    options_.https_ports = {0, 0};
    options_.keeper_ports = {0, 0};
    options_.accounts = {{mac, {"lab-key", "lab-secret"}}};
    options_.policy.redeliver_seconds = 0;
    options_.quiet = true;
    start();
}

Lab::~Lab() { stop(); }

void Lab::start() {
    cloud_ = std::make_unique<lab::Cloud>(options_);
    cloud_->start();
    ports_ = Json::parse(cloud_->ports_json());
}

void Lab::stop() { cloud_.reset(); }

Peer Lab::checkin_listener(std::size_t index) const {
    return {ports_["https"][index], ports_["ca_dir"]};
}

Json Lab::report_seqno(std::int64_t seqno) {
    Checkin checkin;
    checkin.body = Json{{"system", {{"cloud", {{"config_seqno", seqno}}}}}}.dump();
    const Answer answer = check_in(checkin);
    EXPECT_EQ(answer.status, 200) << answer.body;
    return Json::parse(answer.body, nullptr, false);
}

Json Lab::admin(
    const std::string& method, const std::string& path, const std::string& body,
    int expected_status) {
    const Answer answer = request(admin_listener(), method, path, body);
    EXPECT_EQ(answer.status, expected_status) << method << " " << path << ": " << answer.body;
    return Json::parse(answer.body, nullptr, false);
}

Json Lab::events(const std::string& kind) {
    return admin_get("/events?timeout=10&kind=" + kind)["events"];
}

Json Lab::nth_event(const std::string& kind, std::size_t n) {
    std::int64_t after = 0;
    Json event;
    for (std::size_t i = 0; i < n; i++) {
        const Json found =
            admin_get("/events?timeout=10&kind=" + kind + "&after=" + std::to_string(after));
        if (found["events"].empty()) {
            ADD_FAILURE() << "no event " << kind << " number " << i + 1;
            return {};
        }
        event = found["events"][0];
        after = event["id"];
    }
    return event;
}

std::int64_t Lab::counter(const std::string& name) {
    return admin_get("/stats")["counters"].value(name, std::int64_t{0});
}

} // namespace lab_test
