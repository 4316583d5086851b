// A message waits at the keeper, which misbehaves while it is fetched.
#include <curl/curl.h>

#include <cstring>

#include "base/state.h"
#include "core/keeper.h"
#include "sim/edges/transfers.h"
#include "sim/instruments/patience.h"
#include "tests/hostile/network/scene.h"
#include "tests/hostile/network/tables.h"

namespace {

const nlohmann::json message = {{"action", "counter_reset"}, {"port", "1"}};

class KeeperRow {
  public:
    KeeperRow(const LabProcess& lab, const Misbehaviour& what) : scene_(lab), what_(what) {}

    Row measure() {
        scene_.forget_switch();
        scene_.start_agent(true);
        scene_.queue("actions", message);
        char url[256];
        format_listen_url(url, sizeof url);
        url_ = what_.concerns_name() ? std::string("http://lab.test:") + rest_of(url) : url;
        scene_.spoil(what_, {"keeper", 0, url_, 2, false});
        const double began = scene_.board.clock.running();
        keeper_turn(url_.c_str(), &failures_);
        const double took = scene_.board.clock.running() - began + time_out();
        const bool obeyed = take_obeyed();
        Row row = {
            what_.name, failures_ ? "failed" : "answered", obeyed ? "obeyed" : "",
            std::to_string(failures_), show_seconds(took)};
        scene_.mend();
        row.push_back(what_.kind == Misbehaviour::nothing ? "" : afterwards(obeyed));
        return row;
    }

  private:
    static std::string rest_of(const std::string& url) {
        return url.substr(url.rfind(":", url.find("/router")) + 1);
    }

    // A transfer beside others is not waited for by the edge that knows of time-outs.
    double time_out() const {
        if (!failures_ || !sim::patience().milliseconds(url_))
            return 0;
        return static_cast<double>(sim::transfer_option(url_, CURLOPT_TIMEOUT).value_or(0));
    }

    bool take_obeyed() {
        const bool obeyed = scene_.called("sal_mib_cntr_clr");
        scene_.forget();
        return obeyed;
    }

    // Whether the next request, at a network that has healed, finds the message.
    std::string afterwards(bool obeyed) {
        if (obeyed)
            return "";
        sim::patience().cut(url_, 250); // nothing is said where nothing waits
        keeper_turn(url_.c_str(), &failures_);
        return take_obeyed() ? "delivered again" : "lost";
    }

    Scene scene_;
    const Misbehaviour& what_;
    std::string url_;
    int failures_ = 0;
};

} // namespace

Table measure_keeper() {
    Table table{
        "Connection keeper",
        {"misbehaviour", "request", "message", "failures in a row", "next request after",
         "message afterwards"},
        {}};
    const LabProcess lab;
    for (const Misbehaviour& what : all_misbehaviours())
        if (what.kind != Misbehaviour::of_certificate)
            table.rows.push_back(KeeperRow(lab, what).measure());
    return table;
}
