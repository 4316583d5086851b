// Making calls side by side and crosswise, and comparing with what one thread alone gets.
#include "judge/together.h"

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

constexpr int rounds = 3;
constexpr std::size_t neighbours = 4;
constexpr std::size_t most_findings = 5; // more say no more

// A getter, inputs for it, and what it answers when it is called alone.
struct Question {
    const Operation* operation;
    Numbers inputs;
    std::string answer;
};

std::string answer_to(const Operation& operation, const Numbers& inputs) {
    Outcome outcome = make_call(operation, inputs);
    std::string text = operation.result.varies ? "" : std::to_string(outcome.code);
    for (std::size_t i = 0; i < operation.parameters.size(); ++i)
        if (!operation.parameters[i].varies)
            text += "|" + outcome.outputs[i].bytes();
    return text;
}

// A few inputs of each getter, from the first to the last.
std::vector<Question> questions(std::size_t most_inputs) {
    std::vector<Question> all;
    for (const Operation& operation : all_reads()) {
        std::vector<Numbers> inputs = good_inputs(operation.parameters);
        std::size_t stride = (inputs.size() + most_inputs - 1) / most_inputs;
        for (std::size_t i = 0; i < inputs.size(); i += stride)
            all.push_back({&operation, inputs[i], answer_to(operation, inputs[i])});
    }
    return all;
}

// Answers that are others than those to the same question alone.
class Differences {
  public:
    void note(const Question& question, const std::string& answer) {
        bench->count_case();
        if (answer == question.answer)
            return;
        std::lock_guard<std::mutex> guard(lock_);
        if (suspects_.size() < most_findings)
            suspects_.push_back({&question, answer, Bench::last()});
    }

    // The switch may have changed meanwhile: it is asked again, alone.
    void settle(const char* why, const char* says) const {
        for (const Suspect& suspect : suspects_)
            if (answer_to(*suspect.question->operation, suspect.question->inputs) != suspect.answer)
                bench->convict(
                    why, suspect.call, says, "another answer than when it is called alone");
    }

  private:
    struct Suspect {
        const Question* question;
        std::string answer;
        std::string call;
    };
    std::mutex lock_;
    std::vector<Suspect> suspects_;
};

// One of the two goes through the questions forwards, the other backwards: they meet.
void ask_all(const std::vector<Question>& all, bool forwards, Differences& differences) {
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < all.size() && !Bench::stopped(); ++i) {
            const Question& question = all[forwards ? i : all.size() - 1 - i];
            differences.note(question, answer_to(*question.operation, question.inputs));
        }
}

// Where the two threads wait for each other.
class Meeting {
  public:
    void meet() {
        std::unique_lock<std::mutex> guard(lock_);
        unsigned round = round_;
        if (++waiting_ == 2) {
            waiting_ = 0;
            ++round_;
            both_.notify_all();
            return;
        }
        both_.wait(guard, [&] { return round_ != round; });
    }

  private:
    std::mutex lock_;
    std::condition_variable both_;
    int waiting_ = 0;
    unsigned round_ = 0;
};

// Each getter beside its neighbours in the table, which are its family, at the same moment: what
// they lock, they lock together.
void ask_side_by_side(
    const std::vector<Question>& all, bool first, Meeting& meeting, Differences& differences) {
    for (std::size_t distance = 0; distance <= neighbours; ++distance)
        for (std::size_t i = 0; i + distance < all.size(); ++i) {
            const Question& question = all[first ? i : i + distance];
            meeting.meet();
            differences.note(question, answer_to(*question.operation, question.inputs));
        }
}

// A thread of its own in which signals are left to the main thread.
template <class Work> std::thread other_thread(Work work) {
    return std::thread([work] {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        Bench::stand_at(1);
        work();
    });
}

// --- The handler.

const std::vector<Question>* asked_by_handler = nullptr;
Differences* found_by_handler = nullptr;
std::atomic<bool> handler_done{false};

void ask_in_handler(int) {
    Bench::stand_at(2);
    for (const Question& question : *asked_by_handler) {
        if (Bench::stopped())
            break;
        found_by_handler->note(question, answer_to(*question.operation, question.inputs));
    }
    Bench::stand_at(0);
    handler_done = true;
}

void sleep_until_handled() {
    while (!handler_done && !Bench::stopped())
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

} // namespace

void judge_two_threads() {
    Differences differences;
    std::vector<Question> all = questions(8);
    std::vector<Question> one_each = questions(1);
    Meeting meeting;
    std::thread second = other_thread([&] {
        ask_side_by_side(one_each, false, meeting, differences);
        ask_all(all, false, differences);
    });
    ask_side_by_side(one_each, true, meeting, differences);
    ask_all(all, true, differences);
    second.join();
    differences.settle(reason::differs_at_once, "calls may come from two threads at once");
}

void judge_signal_handler() {
    Differences differences;
    std::vector<Question> all = questions(4);
    asked_by_handler = &all;
    found_by_handler = &differences;
    handler_done = false;
    signal(SIGUSR1, ask_in_handler);
    pthread_t main_thread = pthread_self();
    std::thread second = other_thread([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        pthread_kill(main_thread, SIGUSR1);
        ask_all(all, true, differences);
    });
    sleep_until_handled();
    second.join();
    signal(SIGUSR1, SIG_IGN);
    differences.settle(
        reason::differs_in_handler, "calls may come from a signal handler on the main thread");
}

namespace {

// Nobody else sets this one, so what was set is read back.
void set_and_read_back(const Setting& setting) {
    for (int round = 0; round < rounds; ++round)
        for (const Numbers& values : good_inputs(setting.values)) {
            if (Bench::stopped())
                return;
            int code = setting.write(values);
            std::string call = Bench::last();
            Numbers found;
            bench->count_case();
            if (code != 0 || setting.read({}, found) != 0 || found != values)
                return bench->convict(
                    reason::differs_at_once, call, "calls may come from two threads at once",
                    "what was set is not read back while another thread calls");
        }
}

} // namespace

void judge_changes_at_once() {
    std::vector<const Setting*> settings = simple_settings();
    std::vector<std::unique_ptr<Undo>> undos;
    for (const Setting* setting : settings) {
        Numbers present;
        if (setting->read({}, present) == 0)
            undos.push_back(std::make_unique<Undo>(
                setting->name, std::vector<std::string>{std::to_string(present[0])}));
    }
    std::thread second = other_thread([&] {
        for (std::size_t i = 1; i < settings.size(); i += 2)
            set_and_read_back(*settings[i]);
    });
    for (std::size_t i = 0; i < settings.size(); i += 2)
        set_and_read_back(*settings[i]);
    second.join();
}

} // namespace judge
