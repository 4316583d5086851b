// Connects the parts of the lab with their listeners, and opens and closes these.
#include "lab/cloud.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <stdexcept>

namespace lab {

namespace {

namespace fs = std::filesystem;

fs::path made(const fs::path& folder) {
    fs::create_directories(folder);
    return fs::canonical(folder);
}

} // namespace

Cloud::Cloud(const Options& options, Between between)
    : options_([&] {
          Options own = options;
          own.data = made(options.data);
          return own;
      }()),
      between_(std::move(between)), store_((options_.data / "lab.db").string()),
      overview_((options_.data / "lab.db").string()), events_(store_, options_.quiet),
      policy_(options_.policy), authority_(options_.data / "ca"),
      images_(options_.data / "firmware"), checkin_(store_, events_, policy_),
      keeper_(store_, events_, policy_), time_(events_, policy_), firmware_(events_, images_),
      admin_(
          {store_, overview_, events_, policy_, keeper_, misbehaviours_, images_,
           [this] { return ports_json(); },
           [this](const std::string& listener, int port) { return has_port(listener, port); },
           [this] { fit_listeners(); }}) {
    for (const auto& [mac, account] : options_.accounts)
        store_.put_switch(mac, account);
    add_listeners();
}

Cloud::~Cloud() { stop(); }

Handler Cloud::put_between(const std::string& name, Handler serve) const {
    if (!between_ || name == "admin")
        return serve;
    return [this, name, serve = std::move(serve)](const Call& call) {
        return between_(name, call, serve);
    };
}

ListenerPlan Cloud::plan_plain(int port, const std::string& name, Handler handler) {
    ListenerPlan plan;
    plan.port = port;
    plan.plain_name = name;
    plan.plain = put_between(name, std::move(handler));
    if (name != "admin")
        plan.misbehaviours = &misbehaviours_;
    if (name != "admin") // browsers open connections there in advance
        plan.on_no_request = [this](const std::string& listener, int at, const std::string& how) {
            events_.note(
                "no-request", "", how + " (" + listener + " port " + std::to_string(at) + ")",
                {{"listener", listener}, {"port", at}});
        };
    plan.on_misbehaviour = [this](const std::string& listener, int at, Fault fault) {
        events_.note(
            "misbehaviour", "",
            "misbehaving on " + listener + " port " + std::to_string(at) + ": " +
                std::string(fault_name(fault)),
            {{"mode", fault_name(fault)}, {"listener", listener}, {"port", at}});
    };
    return plan;
}

ListenerPlan Cloud::plan_checkin(int port) {
    ListenerPlan plan = plan_plain(port, "plain", [this](const Call& call) {
        const bool fetch = TimeService::serves(call) || FirmwareService::serves(call);
        return fetch ? answer_plain(call) : checkin_.answer(call);
    });
    plan.tls_name = "checkin";
    plan.tls = put_between(plan.tls_name, [this](const Call& call) {
        return FirmwareService::serves(call) ? firmware_.answer(call) : checkin_.answer(call);
    });
    plan.authority = &authority_;
    plan.body_limit = [](const Call&) { return CheckinService::longest_body; };
    plan.on_tls_failure = [this](const std::string& reason) {
        events_.note("tls-failed", "", "TLS handshake failed: " + reason, {{"reason", reason}});
    };
    return plan;
}

Reply Cloud::answer_plain(const Call& call) {
    if (TimeService::serves(call))
        return time_.answer(call);
    if (FirmwareService::serves(call))
        return firmware_.answer(call);
    return {404, "there is nothing at " + call.path + "\n", "text/plain"};
}

void Cloud::add_listeners() {
    const auto add = [this](const std::string& name, ListenerPlan plan) {
        listeners_.push_back({name, std::make_unique<Listener>(std::move(plan))});
    };
    for (const int port : options_.https_ports)
        add("checkin", plan_checkin(port));
    add("plain", plan_plain(options_.http_port, "plain", [this](const Call& call) {
            return answer_plain(call);
        }));
    for (const int port : options_.keeper_ports)
        add("keeper",
            plan_plain(port, "keeper", [this](const Call& call) { return keeper_.listen(call); }));
    ListenerPlan admin = plan_plain(
        options_.admin_port, "admin", [this](const Call& call) { return admin_.answer(call); });
    admin.body_limit = AdminService::body_limit;
    add("admin", std::move(admin));
}

// Listeners that are to refuse are closed, all others are open.
void Cloud::fit_listeners() {
    const std::lock_guard lock(listeners_mutex_);
    for (const auto& [name, listener] : listeners_) {
        if (misbehaviours_.refuses(name, listener->port()))
            listener->close(true);
        else
            listener->open();
    }
}

void Cloud::start() {
    std::signal(SIGPIPE, SIG_IGN);
    fit_listeners();
    const fs::path draft = options_.data / "ports.json.new";
    std::ofstream file(draft);
    file << ports_json();
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + draft.string());
    fs::rename(draft, ports_file());
}

void Cloud::stop() {
    events_.stop();
    keeper_.stop();
    std::error_code ignored;
    fs::remove(ports_file(), ignored);
    // The admin listener opens last and closes first, for it opens and closes the others.
    for (auto named = listeners_.rbegin(); named != listeners_.rend(); ++named)
        named->listener->close();
}

// A check-in port has a plain side as well.
bool Cloud::has_port(const std::string& listener, int port) const {
    return std::ranges::any_of(listeners_, [&](const NamedListener& named) {
        const bool has_side =
            named.name == listener || (named.name == "checkin" && listener == "plain");
        return listener != "admin" && has_side && (port == 0 || named.listener->port() == port);
    });
}

std::vector<int> Cloud::ports(const std::string& name) const {
    std::vector<int> list;
    for (const auto& named : listeners_)
        if (named.name == name)
            list.push_back(named.listener->port());
    return list;
}

std::string Cloud::ports_json() const {
    const nlohmann::ordered_json ports = {
        {"https", this->ports("checkin")},
        {"http", this->ports("plain").front()},
        {"keeper", this->ports("keeper")},
        {"admin", this->ports("admin").front()},
        {"ca_dir", authority_.trust_folder().string()},
        {"pid", getpid()}};
    return ports.dump() + "\n";
}

std::string Cloud::addresses(const std::string& name) const {
    std::string text;
    for (const int port : ports(name))
        text += " 127.0.0.1:" + std::to_string(port);
    return text;
}

std::string Cloud::ready_line() const {
    return "lab cloud ready: https" + addresses("checkin") + " http" + addresses("plain") +
           " keeper" + addresses("keeper") + " admin" + addresses("admin");
}

} // namespace lab
