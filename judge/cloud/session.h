// One judgement: what every check needs to send and to tell.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "judge/cloud/checkin.h"
#include "judge/cloud/connection.h"
#include "judge/cloud/options.h"
#include "judge/cloud/reply.h"
#include "judge/report.h"

namespace judge::cloud {

enum class Level { must, should };

// What became of a document that the cloud's operator was to queue.
struct HandOver {
    std::string skipped; // why nobody tried
    std::string failure; // what went wrong when it was tried
    bool done() const { return skipped.empty() && failure.empty(); }
};

class Session {
  public:
    explicit Session(const Options& options);

    const Options options;
    const Trust trust;
    Report report;
    std::int64_t number; // of the settings that the switch has applied
    std::atomic<std::uint64_t> requests{0};

    // A check-in with which nothing is wrong, for the check-in host.
    Checkin good() const;
    // The report of a switch that has applied the settings of that number.
    std::string report_text(std::int64_t seqno) const;

    // Sends to the check-in host unless another is named, and waits for the answer.
    Reply send(const Checkin& checkin);
    Reply send(const Checkin& checkin, const Host& host);
    Reply get(const Host& host, const std::string& path, double seconds);

    // Gives a document to the operator's command, or to the operator.
    HandOver hand_over(const std::string& command, const char* what, const Json& document) const;

  private:
    Json report_;
};

// One check: what was sent and what came, told to the report when it goes out of scope. It is good
// unless it was said to be at fault.
class Check {
  public:
    Check(Session& session, const char* family, std::string name, Level level, std::string says);
    ~Check();
    Check(const Check&) = delete;
    Check& operator=(const Check&) = delete;

    // What was sent, in words; of a check-in its head, too.
    Check& sent(const std::string& words);
    Check& sent(const std::string& words, const Checkin& checkin);
    Check& came(const std::string& words);
    Check& came(const Reply& reply) { return came(reply.text()); }
    void fault(const std::string& reason);
    // Something else that comes to light with it, by a statement of its own.
    void fault(Level level, const std::string& reason, const std::string& says);
    void skip(const std::string& why) { result_.skipped = why; }
    // What came of handing a document over. False, with what there is to tell told: it was not
    // done.
    bool expect_done(const HandOver& result);
    bool good() const { return result_.findings.empty() && result_.skipped.empty(); }

  private:
    Session& session_;
    std::uint64_t requests_before_;
    StepResult result_;
    Finding seen_;
};

// Whether a check-in was served as a good one must be. False, with the fault told, when it was not.
bool expect_served(Check& check, const Reply& reply);
// Whether a bad one was refused, and in the right way.
void expect_refused(Check& check, const Reply& reply);

} // namespace judge::cloud
