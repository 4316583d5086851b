// Wired as the program wires them.
#include "lab_in_process.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "tests/fuzz/support/reached.h"

extern "C" const char* __asan_default_options() {
    return "malloc_context_size=3:quarantine_size_mb=4";
}

namespace lab_fuzz {

namespace {

constexpr int requests_of_a_lab = 2000;

class MemoryFolder {
  public:
    MemoryFolder() {
        const bool in_memory = std::filesystem::is_directory("/dev/shm");
        std::string pattern = in_memory ? "/dev/shm/lab_fuzz_XXXXXX" : "/tmp/lab_fuzz_XXXXXX";
        path_ = mkdtemp(pattern.data());
    }
    ~MemoryFolder() { std::filesystem::remove_all(path_); }
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace

InProcess::InProcess(const std::string& folder)
    : store_(folder + "/lab.db"), overview_(folder + "/lab.db"), events_(store_, true),
      policy_(lab::Policy{.window = 0}), images_(folder + "/firmware"),
      checkin_(store_, events_, policy_), keeper_(store_, events_, policy_),
      time_(events_, policy_), firmware_(events_, images_),
      admin_(
          {store_, overview_, events_, policy_, keeper_, misbehaviours_, images_,
           [] { return std::string("{}"); }, [](const std::string&, int) { return true; }, [] {}}),
      check_in_port_(plan_check_in()), admin_port_(plan_admin()) {
    store_.put_switch(mac, {"lab-key", "lab-secret"});
    events_.stop(); // nobody waits
    keeper_.stop();
}

lab::ListenerPlan InProcess::plan_check_in() {
    lab::ListenerPlan plan;
    plan.plain_name = "plain";
    plan.plain = [this](const lab::Call& call) {
        if (lab::TimeService::serves(call))
            return time_.answer(call);
        if (lab::FirmwareService::serves(call))
            return firmware_.answer(call);
        return call.path.starts_with("/router/listen/") ? keeper_.listen(call)
                                                        : checkin_.answer(call);
    };
    plan.body_limit = [](const lab::Call&) { return lab::CheckinService::longest_body; };
    return plan;
}

lab::ListenerPlan InProcess::plan_admin() {
    lab::ListenerPlan plan;
    plan.plain_name = "admin";
    plan.plain = [this](const lab::Call& call) { return admin_.answer(call); };
    plan.body_limit = lab::AdminService::body_limit;
    return plan;
}

// The request and its end are there before it is served, and the reply fits what a socket holds.
std::string InProcess::ask(lab::Listener& port, const std::string& request) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        std::abort();
    send(ends[1], request.data(), request.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    shutdown(ends[1], SHUT_WR);
    const int room = 4 << 20;
    setsockopt(ends[0], SOL_SOCKET, SO_SNDBUF, &room, sizeof room);
    port.serve(ends[0]);
    std::string reply;
    char bytes[16384];
    for (ssize_t count; (count = recv(ends[1], bytes, sizeof bytes, MSG_DONTWAIT)) > 0;)
        reply.append(bytes, static_cast<std::size_t>(count));
    close(ends[1]);
    note_reached();
    return reply;
}

InProcess& lab_of_the_hour() {
    static std::unique_ptr<MemoryFolder> folder;
    static std::unique_ptr<InProcess> lab;
    static int requests = 0;
    if (requests++ % requests_of_a_lab == 0) {
        lab.reset();
        folder = std::make_unique<MemoryFolder>();
        lab = std::make_unique<InProcess>(folder->path().string());
    }
    return *lab;
}

} // namespace lab_fuzz
