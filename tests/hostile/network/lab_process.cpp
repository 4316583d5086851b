// Starting, asking and ending the lab.
#include "tests/hostile/network/lab_process.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/lab/wire_client.h"

namespace {

std::vector<std::string> command_line(const std::filesystem::path& data) {
    return {
        LAB_CLOUD_PROGRAM,
        "--data",
        data.string(),
        "--https-port",
        "0",
        "--https-port",
        "0",
        "--keeper-port",
        "0",
        "--account",
        "02:1B:2C:3D:4E:5F,thekey,thesecret",
        "--window", // hours pass in an instant here
        "0",
        "--redeliver-seconds",
        "0",
        "--redeliver-tries",
        "0",
        "--quiet"};
}

pid_t run(std::vector<std::string> words) {
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const pid_t process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (!freopen("/dev/null", "w", stdout))
            _exit(126);
        execv(pointers[0], pointers.data());
        _exit(127);
    }
    return process;
}

} // namespace

LabProcess::LabProcess() : process_(run(command_line(folder_.path()))) { wait_for_ports(); }

LabProcess::~LabProcess() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

void LabProcess::wait_for_ports() {
    const auto file = folder_.path() / "ports.json";
    for (int tries = 0; !std::filesystem::exists(file); ++tries) {
        if (tries == 6000)
            throw std::runtime_error("the lab cloud does not start");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::ifstream in(file);
    ports_ = nlohmann::json::parse(in);
}

nlohmann::json
LabProcess::ask(const std::string& method, const std::string& path, const std::string& body) const {
    const lab_test::Answer answer = lab_test::request({ports_["admin"], ""}, method, path, body);
    if (answer.status / 100 != 2)
        throw std::runtime_error(method + " " + path + ": " + answer.body);
    return nlohmann::json::parse(answer.body, nullptr, false);
}

int LabProcess::checkins() const { return ask("GET", "/stats")["counters"].value("checkin", 0); }
