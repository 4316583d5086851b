// Reading the pipe, waiting with patience, and telling a crash from a hang.
#include "judge/watch.h"

#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "judge/bench.h"

namespace judge {

namespace {

using Clock = std::chrono::steady_clock;

volatile sig_atomic_t stopped = 0;
pid_t worker_process = 0;

// A terminal sends its interrupt to both processes; somebody else perhaps to this one alone.
void pass_on(int) {
    stopped = 1;
    if (worker_process > 0)
        kill(worker_process, SIGTERM);
}

std::vector<std::string> fields_of(const std::string& line) {
    std::vector<std::string> fields;
    std::size_t begin = 0;
    for (std::size_t tab; (tab = line.find('\t', begin)) != line.npos; begin = tab + 1)
        fields.push_back(line.substr(begin, tab - begin));
    fields.push_back(line.substr(begin));
    return fields;
}

class Watch {
  public:
    Watch(const Options& options, char** arguments) : options_(options), arguments_(arguments) {}

    Report run() {
        share_memory();
        struct sigaction action = {};
        action.sa_handler = pass_on;
        sigaction(SIGINT, &action, nullptr);
        sigaction(SIGTERM, &action, nullptr);
        int from = 0;
        while (from >= 0 && !stopped)
            from = run_worker(from, false);
        report_.interrupted = report_.interrupted || stopped;
        return std::move(report_);
    }

  private:
    void share_memory() {
        char name[] = "/tmp/platform_judge.XXXXXX";
        memory_file_ = mkstemp(name);
        if (memory_file_ >= 0)
            unlink_file(name);
        if (memory_file_ < 0 || ftruncate(memory_file_, sizeof(Shared)) != 0)
            fail("shared memory");
        void* memory =
            mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, memory_file_, 0);
        if (memory == MAP_FAILED)
            fail("shared memory");
        shared_ = static_cast<Shared*>(memory);
    }

    static void unlink_file(const char* name) { std::remove(name); }

    [[noreturn]] static void fail(const char* what) {
        std::perror(what);
        std::exit(2);
    }

    // The step to go on with, or -1 when all is judged. After a library that failed, what it left
    // behind is put back by a process of its own.
    int run_worker(int from, bool restore) {
        int events[2];
        if (pipe(events) != 0)
            fail("pipe");
        worker_process = fork();
        if (worker_process < 0)
            fail("fork");
        if (worker_process == 0)
            become_worker(events, from, restore);
        ::close(events[1]);
        bool hung = take_events(events[0]);
        ::close(events[0]);
        int status = 0;
        while (waitpid(worker_process, &status, 0) < 0 && errno == EINTR) {}
        worker_process = 0;
        if (WIFEXITED(status) && WEXITSTATUS(status) == 3 && !hung)
            report_.interrupted = true;
        if (WIFEXITED(status) && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == 3) && !hung)
            return -1;
        note_failure(status, hung);
        if (restore)
            return -1;
        int next = shared_->step + 1;
        if (options_.change)
            run_worker(0, true);
        return next;
    }

    [[noreturn]] void become_worker(int events[2], int from, bool restore) {
        ::close(events[0]);
        std::string extra[] = {
            "--worker=" + std::to_string(events[1]), "--shared=" + std::to_string(memory_file_),
            "--from=" + std::to_string(from), "--restore"};
        std::vector<char*> arguments;
        for (char** argument = arguments_; *argument; ++argument)
            arguments.push_back(*argument);
        for (std::string& argument : extra)
            if (restore || &argument != &extra[3])
                arguments.push_back(&argument[0]);
        arguments.push_back(nullptr);
        execv("/proc/self/exe", arguments.data());
        std::perror("the judge cannot start itself");
        _exit(2);
    }

    // True when the worker had to be killed, for a call that did not return.
    bool take_events(int events) {
        std::string buffer;
        std::uint64_t calls = shared_->calls;
        Clock::time_point progress = Clock::now();
        for (;;) {
            pollfd wait = {events, POLLIN, 0};
            int ready = poll(&wait, 1, 200);
            if (ready > 0 && !read_events(events, buffer))
                return false;
            if (ready != 0 || shared_->calls != calls) {
                calls = shared_->calls;
                progress = Clock::now();
            }
            if (Clock::now() - progress > std::chrono::seconds(options_.timeout)) {
                kill(worker_process, SIGKILL);
                return true;
            }
        }
    }

    bool read_events(int events, std::string& buffer) {
        char bytes[65536];
        ssize_t count = read(events, bytes, sizeof bytes);
        if (count <= 0)
            return false;
        buffer.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end; (end = buffer.find('\n')) != buffer.npos; buffer.erase(0, end + 1))
            take(fields_of(buffer.substr(0, end)));
        return true;
    }

    // What is so for several steps is remarked once.
    void remark(const std::string& text) {
        std::vector<std::string>& remarks = report_.remarks;
        if (std::find(remarks.begin(), remarks.end(), text) == remarks.end())
            remarks.push_back(text);
    }

    void take(const std::vector<std::string>& event) {
        const std::string& kind = event[0];
        if (kind == "S" && event.size() == 4) {
            report_.steps.push_back({std::atoi(event[1].c_str()), event[2], event[3], 0, 0, {}});
            if (options_.verbose)
                std::fprintf(stderr, "%s, %s\n", event[2].c_str(), event[3].c_str());
        } else if (kind == "F" && event.size() == 5) {
            report_.add(step(), {event[1], event[2], event[3], event[4]});
        } else if (kind == "R" && event.size() == 2) {
            remark(event[1]);
        } else if (kind == "N" && event.size() == 3) {
            report_.calls[event[1]] += std::strtoull(event[2].c_str(), nullptr, 10);
        } else if (kind == "E" && event.size() == 3) {
            step().calls = std::strtoull(event[1].c_str(), nullptr, 10);
            step().cases = std::strtoull(event[2].c_str(), nullptr, 10);
        }
    }

    StepResult& step() {
        if (report_.steps.empty())
            report_.steps.push_back({});
        return report_.steps.back();
    }

    // Which call it was: those that threads are in, or else the one made last.
    std::string calls_at_the_end() const {
        std::string calls;
        for (int place = 0; place < Shared::threads; ++place)
            if (shared_->busy[place])
                calls += (calls.empty() ? "" : " and ") + std::string(shared_->call[place]);
        return calls.empty() ? "after " + std::string(shared_->call[0]) : calls;
    }

    void note_failure(int status, bool hung) {
        Finding finding;
        finding.call = calls_at_the_end();
        finding.reason = hung ? reason::hung : reason::crashed;
        finding.says = hung ? "calls return" : "calls end by returning";
        finding.came = hung ? "nothing for " + std::to_string(options_.timeout) + " seconds"
                       : WIFSIGNALED(status)
                           ? "signal " + std::to_string(WTERMSIG(status)) + " (" +
                                 strsignal(WTERMSIG(status)) + ")"
                           : "the process ended with " + std::to_string(WEXITSTATUS(status));
        report_.add(step(), finding);
        for (auto& busy : shared_->busy)
            busy = false;
    }

    const Options& options_;
    char** arguments_;
    Report report_;
    int memory_file_ = -1;
    Shared* shared_ = nullptr;
};

} // namespace

Report watch(const Options& options, char** arguments) { return Watch(options, arguments).run(); }

} // namespace judge
