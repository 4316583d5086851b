// A switch and its cloud, for one row of a table.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sim/library/board.h"
#include "tests/hostile/network/lab_process.h"
#include "tests/hostile/network/misbehaviours.h"
#include "tests/support/name_service.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"

// An exchange that is spoiled: the lab's listener and port (0: all), and how its transfers' URLs
// begin.
struct Place {
    std::string listener;
    int port;
    std::string url;
    int slow_ms;     // of the wall, for a second between two bytes
    bool slow_hangs; // at that pace the reply takes longer than the agent waits
};

inline constexpr std::size_t never = static_cast<std::size_t>(-1);

class Scene {
  public:
    explicit Scene(const LabProcess& lab);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // The agent after its start; `established`: it has checked in before. Hosts that misbehave by
    // their names have one, the others are addresses.
    void start_agent(bool established);
    static std::string named(const std::string& host); // the same host by the name of NameService

    void spoil(const Misbehaviour& what, const Place& place);
    void mend();

    // When check-ins were begun in some turns of the main loop, in simulated seconds, and at last
    // when the next one would be.
    using Question = std::function<bool()>;
    struct Until {
        int turns = 1;
        std::size_t checkins = never; // no turn begins after so many
        std::size_t mended = never;   // before that one, counted from 0, the network is mended
        Question cured = {};          // and before the first that finds this true
    };
    std::vector<double> begin_checkins(const Until& until);

    // Settings, or an action, that wait for the switch; nothing else waits or was ever sent.
    void queue(const std::string& what, const nlohmann::json& document) const;
    void forget_switch() const;
    nlohmann::json report() const; // the last one

    Lines trace() const { return board.trace.lines(); }
    bool called(const std::string& name) const;
    void forget();

    // How each transfer to a URL that begins and ends so went, in groups: "7 ×6", "HTTP 500".
    std::string outcomes(const std::string& begin, const std::string& end) const;
    bool file_is_left() const; // of a firmware image, in the switch's memory
    Lines pauses() const;      // sleeps between the first and the last transfer
    std::string last_sleep() const;

    const LabProcess& lab;
    TempFolder folder;
    sim::Board board; // a small switch, whose reports are soon made

  private:
    NameService names_{"lab.test"};
    std::vector<std::pair<std::size_t, std::string>> told_; // line of the trace, HTTP status
};

// The longest time from a check-in that meets a bad network, which heals right after its begin, to
// the first good one, in seconds: "300 s". `begun` is when check-ins began where it did not heal;
// `prepare` starts the agent and spoils the network.
std::string longest_absence(
    Scene& scene, const std::vector<double>& begun, const std::function<void()>& prepare,
    const Scene::Question& cured = {});

std::string show_seconds(double seconds);
