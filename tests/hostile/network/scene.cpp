// The agent is the one of this process; the main loop is turned by hand.
#include "tests/hostile/network/scene.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "base/state.h"
#include "core/main_loop.h"
#include "sim/edges/transfers.h"
#include "sim/instruments/patience.h"

namespace {

constexpr long wall_patience = 250; // milliseconds that stand for a time-out
constexpr const char* mac = "02:1B:2C:3D:4E:5F";

bool is_transfer(const std::string& line) { return line.starts_with("transfer("); }
bool is_sleep(const std::string& line) { return line.starts_with("sleep("); }

std::string url_of(const std::string& transfer) {
    const std::size_t begin = transfer.find('"') + 1;
    return transfer.substr(begin, transfer.find('"', begin) - begin);
}

std::string result_of(const std::string& line) { return line.substr(line.rfind("= ") + 2); }

std::string group(const Lines& outcomes) {
    std::string text;
    for (std::size_t at = 0; at < outcomes.size();) {
        std::size_t end = at;
        while (end < outcomes.size() && outcomes[end] == outcomes[at])
            ++end;
        text += (text.empty() ? "" : ", ") + outcomes[at];
        if (end - at > 1)
            text += " ×" + std::to_string(end - at);
        at = end;
    }
    return text;
}

} // namespace

namespace {

std::filesystem::path small_switch(const std::filesystem::path& folder) {
    const auto file = folder / "small.json";
    std::ofstream(file) << R"({"hardware": {"logical_ports": 12}})";
    return file;
}

} // namespace

Scene::Scene(const LabProcess& of) : lab(of), board(folder.path(), small_switch(folder.path())) {
    std::filesystem::copy(lab.trust_folder(), board.path("/etc/ssl/certs"));
    board.trace.keep();
    board.tell = [this](const std::string& line) {
        const std::size_t status = line.find("status ");
        if (status != std::string::npos)
            told_.emplace_back(trace().size() - 1, line.substr(status + 7, 3));
    };
    forget_switch();
}

Scene::~Scene() {
    sim::watch_transfers({});
    mend();
}

std::string Scene::named(const std::string& host) {
    return "lab.test" + host.substr(host.find(':'));
}

void Scene::start_agent(bool established) {
    reset_agent();
    std::strcpy(macstr, "021b2c3d4e5f");
    std::strcpy(macaddrstr, mac);
    std::strcpy(Checkinstr, (std::string("/cloud-switch/") + mac + "/checkin").c_str());
    std::strcpy(CheckinHost, lab.checkin_host(0).c_str());
    std::strcpy(fallback_host, lab.checkin_host(1).c_str());
    std::strcpy(ConnectionKeeperHost, lab.keeper_host().c_str());
    std::strcpy(gCattr.key, "thekey");
    std::strcpy(gCattr.secret, "thesecret");
    checkin_connect_establish = established;
    forget();
}

void Scene::spoil(const Misbehaviour& what, const Place& place) {
    if (what.kind == Misbehaviour::of_name)
        names_.change(NameService::Answer::none);
    if (what.kind == Misbehaviour::of_family)
        names_.change(NameService::Answer::this_machine_ipv6);
    if (what.is_silent() || (what.is_slow() && place.slow_hangs))
        sim::patience().cut(place.url, wall_patience);
    if (what.order.is_null())
        return;
    nlohmann::json order = what.order;
    order.update({{"listener", place.listener}, {"port", place.port}});
    if (what.is_slow())
        order["delay_ms"] = place.slow_ms;
    lab.misbehave(order);
}

void Scene::mend() {
    names_.change(NameService::Answer::this_machine);
    sim::patience().restore();
    lab.behave();
}

std::vector<double> Scene::begin_checkins(const Until& until) {
    std::vector<double> begun;
    sim::watch_transfers([&](const std::string& url) {
        if (!url.ends_with("/checkin"))
            return;
        if (begun.size() == until.mended || (until.cured && until.cured()))
            mend();
        begun.push_back(board.clock.running());
    });
    KeeperThread none{};
    for (int made = 0; made < until.turns && begun.size() < until.checkins; ++made)
        main_loop_turn(&none);
    sim::watch_transfers({});
    begun.push_back(board.clock.running());
    return begun;
}

void Scene::queue(const std::string& what, const nlohmann::json& document) const {
    lab.ask("POST", std::string("/switches/") + mac + "/" + what, document.dump());
}

void Scene::forget_switch() const {
    const std::string path = std::string("/switches/") + mac;
    lab.ask("DELETE", path);
    lab.ask("PUT", path, R"({"key": "thekey", "secret": "thesecret"})");
}

nlohmann::json Scene::report() const {
    return lab.ask("GET", std::string("/switches/") + mac + "/report");
}

bool Scene::called(const std::string& name) const {
    const Lines names = board.trace.calls();
    return std::find(names.begin(), names.end(), name) != names.end();
}

void Scene::forget() {
    board.trace.clear();
    board.log.clear();
    told_.clear();
}

namespace {

bool concerns(const std::string& line, const std::string& begin, const std::string& end) {
    return is_transfer(line) && url_of(line).starts_with(begin) && url_of(line).ends_with(end);
}

} // namespace

bool Scene::file_is_left() const {
    return std::filesystem::exists(board.path("/tmp/tmp_vmlinux.bix")) ||
           std::filesystem::exists(board.path("/tmp/tmp_backup.bix"));
}

std::string Scene::outcomes(const std::string& begin, const std::string& end) const {
    Lines found;
    const Lines lines = trace();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!concerns(lines[i], begin, end))
            continue;
        const auto told = std::find_if(
            told_.begin(), told_.end(), [&](const auto& status) { return status.first == i; });
        found.push_back(told == told_.end() ? result_of(lines[i]) : "HTTP " + told->second);
    }
    return group(found);
}

Lines Scene::pauses() const {
    const Lines lines = trace();
    const auto last = std::find_if(lines.rbegin(), lines.rend(), is_transfer).base();
    Lines sleeps;
    std::copy_if(lines.begin(), last, std::back_inserter(sleeps), is_sleep);
    return sleeps;
}

std::string Scene::last_sleep() const {
    const Lines lines = trace();
    const auto last = std::find_if(lines.rbegin(), lines.rend(), [](const std::string& line) {
        return is_transfer(line) || is_sleep(line);
    });
    if (last == lines.rend() || is_transfer(*last))
        return "at once";
    return last->substr(6, last->find(')') - 6) + " s";
}

std::string show_seconds(double seconds) {
    return std::to_string(static_cast<long>(seconds)) + " s";
}

namespace {

std::size_t find_longest_gap(const std::vector<double>& begun) {
    std::size_t longest = 0;
    for (std::size_t i = 0; i + 1 < begun.size(); ++i)
        if (begun[i + 1] - begun[i] > begun[longest + 1] - begun[longest])
            longest = i;
    return longest;
}

} // namespace

std::string longest_absence(
    Scene& scene, const std::vector<double>& bad, const std::function<void()>& prepare,
    const Scene::Question& cured) {
    const std::size_t last_bad = find_longest_gap(bad);
    const std::size_t good = last_bad + 1;
    prepare();
    const int before = scene.lab.checkins();
    const std::vector<double> begun = scene.begin_checkins({2, good + 1, good, cured});
    scene.mend();
    if (begun.size() <= good + 1 || scene.lab.checkins() == before)
        return "never";
    return show_seconds(begun[good] - begun[last_bad]);
}
