// Port settings against a small model of what each key means: whatever document comes, the switch
// is what the model says, and so are the result and the error list.
#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <set>
#include <sstream>

#include "base/state.h"
#include "core/dispatch.h"
#include "platform/acl.h"
#include "platform/vlan.h"
#include "sections/port/configuration.h"
#include "sections/port/report.h"
#include "sim/instruments/codes.h"
#include "sim/instruments/scenario.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/on_board.h"

namespace {

using Document = nlohmann::ordered_json;

constexpr int port_count = 28;
constexpr int first_fibre = 18;
constexpr int first_group = 20;
constexpr int aggregated_port = 10; // in the first group

// ---- The model

struct ModelPort {
    bool enable = true, isolated = false, flow_control = false;
    bool automatic_speed = true, automatic_duplex = true, forced_link = false;
    int speed = 2, duplex = 0, media = 1;
    bool poe = true, by_class = true;
    int priority = 0, limit_type = 1, user_limit = 150, power_resets = 0;
    int pvid = 1;
    bool limit_in = false, limit_out = false;
    int rate_in = 1000000, rate_out = 1000000;
    int cos = 0;
    bool trust = true, voice = false;
    int voice_cos = 0;
    bool mark = false;
};

struct Membership {
    std::set<int> tagged, untagged;
};

// Thrown where a document stops.
struct Stop {
    int code;
};

void demand(bool condition, int code) {
    if (!condition)
        throw Stop{code};
}

bool is_between(int value, int low, int high) { return value >= low && value <= high; }

struct Model {
    std::array<ModelPort, port_count> ports;
    std::map<int, Membership> vlans;
    bool qos = false, voice = false;
    int voice_vid = 4095;
    std::vector<int> errors;

    Model() {
        for (int p = 0; p < port_count; ++p)
            vlans[1].untagged.insert(p);
    }

    int apply(const Document& document) {
        bool qos_was_off = !qos;
        std::set<int> voice_members;
        if (voice && vlans.contains(voice_vid)) {
            voice_members = vlans[voice_vid].tagged;
            voice_members.merge(std::set<int>(vlans[voice_vid].untagged));
        }
        qos = true;
        try {
            for (const Document& element : document) {
                std::optional<int> port = find(element);
                if (port)
                    apply(element, *port, qos_was_off, voice_members);
                else
                    errors.push_back(19);
            }
        } catch (const Stop& stop) {
            errors.push_back(stop.code);
            return stop.code;
        }
        qos = !qos_was_off;
        sweep();
        return 0;
    }

  private:
    static std::optional<int> find(const Document& element) {
        static const std::map<std::string, int> ids = [] {
            std::map<std::string, int> all;
            for (int p = 0; p < port_count; ++p)
                all[std::to_string(p + 1)] = p;
            for (int p = first_fibre; p < first_group; ++p)
                all["F" + std::to_string(p - first_fibre + 1)] = p;
            for (int p = first_group; p < port_count; ++p)
                all["trunk" + std::to_string(p - first_group + 1)] = p;
            return all;
        }();
        if (!element.contains("id"))
            return {};
        auto at = ids.find(element["id"].get<std::string>());
        return at == ids.end() ? std::nullopt : std::optional(at->second);
    }

    void apply(const Document& d, int p, bool qos_was_off, const std::set<int>& voice_members) {
        ModelPort& port = ports[static_cast<std::size_t>(p)];
        if (d.contains("enable"))
            port.enable = d["enable"];
        if (d.value("reset", false)) {
            bool powered = p < 24 && port.poe;
            port.power_resets += powered;
            port.mark |= port.enable || powered;
        }
        if (d.contains("isolation"))
            port.isolated = d["isolation"];
        if (d.contains("pvid")) {
            demand(vlans.contains(d["pvid"]), sim::code_no_vlan);
            port.pvid = d["pvid"];
        }
        if (d.contains("poe") && p < 24)
            apply_poe(d["poe"], port, qos_was_off);
        if (d.contains("tagged_vlans"))
            join(p, true, d["tagged_vlans"]);
        if (d.contains("untagged_vlans"))
            join(p, false, d["untagged_vlans"]);
        if (d.contains("rate_limit") && p < first_group && p != aggregated_port)
            apply_rates(d["rate_limit"], port);
        if (d.contains("link_speed_mode"))
            apply_speed(d["link_speed_mode"], p, port);
        if (d.contains("flow_control"))
            port.flow_control = d["flow_control"];
        if (d.contains("qos")) {
            int cos = d["qos"].value("cos_value", port.cos);
            demand(is_between(cos, 0, 7), sim::code_bad_value);
            port.cos = cos;
            port.trust = d["qos"].value("trust", port.trust);
        }
        if (d.contains("voice_vlan") && !voice_members.contains(p)) {
            port.voice = d["voice_vlan"].value("enable", port.voice);
            int cos = d["voice_vlan"].value("cos_mode", port.voice_cos);
            demand(is_between(cos, 0, 1), sim::code_bad_value);
            port.voice_cos = cos;
        }
    }

    void apply_poe(const Document& d, ModelPort& port, bool qos_was_off) {
        if (d.contains("priority")) {
            demand(is_between(d["priority"], 0, 3), sim::code_bad_value);
            port.priority = d["priority"];
        }
        if (d.contains("power_limit_type")) {
            int type = d["power_limit_type"].get<int>() & 0xFF;
            demand(type == 0 || type == 1, sim::code_bad_value);
            port.limit_type = type + 1;
            port.by_class = type == 0;
        }
        if (d.contains("power_limit_user")) {
            int watts = d["power_limit_user"].get<int>() & 0xFF;
            if (watts > 30)
                qos = !qos_was_off;
            demand(watts <= 30, -1);
            port.user_limit = watts * 5;
        }
        if (d.contains("enable"))
            port.poe = d["enable"];
    }

    static void apply_rate(const Document& d, const char* key, bool limited, int& rate) {
        if (!d.contains(key)) {
            if (!limited)
                rate = 1000000;
            return;
        }
        int kbps = d[key];
        if (kbps == 0)
            return;
        demand(is_between(kbps, 16, 1000000), sim::code_bad_value);
        rate = kbps;
    }

    static void apply_rates(const Document& d, ModelPort& port) {
        apply_rate(d, "tx_limit_kbps", port.limit_out, port.rate_out);
        apply_rate(d, "rx_limit_kbps", port.limit_in, port.rate_in);
        port.limit_out = d.value("enable_tx", port.limit_out);
        port.limit_in = d.value("enable_rx", port.limit_in);
    }

    // A list as ids; none for what is no list.
    static std::optional<std::set<int>> ids_of(const std::string& text) {
        std::set<int> ids;
        std::istringstream fields(text);
        for (std::string field; std::getline(fields, field, ',');) {
            int first = 0, last = 0;
            char dash = 0, more = 0;
            int read = std::sscanf(field.c_str(), "%d%c%d%c", &first, &dash, &last, &more);
            if (read == 1)
                last = first;
            else if (read != 3 || dash != '-' || last < first)
                return {};
            for (int id = first; id <= last; ++id)
                ids.insert(id);
        }
        return ids;
    }

    void join(int p, bool tagged, const std::string& text) {
        auto ids = ids_of(text);
        if (!ids)
            return;
        for (auto& [id, members] : vlans)
            (tagged ? members.tagged : members.untagged).erase(p);
        bool all_there = true;
        for (int id : *ids) {
            if (is_between(id, 1, 4094))
                vlans[id];
            else
                all_there = false;
        }
        for (int id : *ids) {
            if (!all_there)
                return;
            (tagged ? vlans[id].tagged : vlans[id].untagged).insert(p);
            (tagged ? vlans[id].untagged : vlans[id].tagged).erase(p);
        }
    }

    // Modes as megabits and half duplex; the platform's speeds 0, 1, 2, 4 and 5 for negotiation.
    static void apply_speed(int mode, int p, ModelPort& port) {
        demand(is_between(mode, 0, 6), 19);
        static const int speeds[] = {5, 2, 1, 1, 0, 0, 4};
        bool half = mode == 3 || mode == 5;
        bool fibre = is_between(p, first_fibre, first_group - 1);
        bool group = p >= first_group;
        if (fibre && (mode == 2 || is_between(mode, 3, 5)))
            return;
        if (group && half)
            return;
        demand(fibre || group || mode != 6, sim::code_bad_value); // no 10 gigabit on copper
        port.automatic_speed = mode == 0;
        port.speed = speeds[mode];
        bool ten_gigabit_setting = fibre || (group && mode == 6);
        if (!ten_gigabit_setting) {
            port.automatic_duplex = mode == 0;
            port.duplex = half;
        } else if (mode != 6) {
            port.media = mode == 1 ? 2 : 1;
        } else {
            port.media = 1;
        }
        port.forced_link |= fibre;
    }

    void sweep() {
        for (auto at = vlans.begin(); at != vlans.end();) {
            if (!at->second.tagged.empty() || !at->second.untagged.empty()) {
                ++at;
                continue;
            }
            if (at->first == 1) // the switch does not give up its default VLAN
                return;
            for (ModelPort& port : ports)
                if (port.pvid == at->first)
                    port.pvid = 1;
            at = vlans.erase(at);
        }
    }
};

// ---- Switch and model as text, so that a difference can be read

std::string show(const ModelPort& p) {
    std::ostringstream out;
    out << p.enable << p.isolated << p.flow_control << " speed " << p.automatic_speed << p.speed
        << " duplex " << p.automatic_duplex << p.duplex << " media " << p.media << p.forced_link
        << " poe " << p.poe << p.by_class << " " << p.priority << " " << p.limit_type << " "
        << p.user_limit << " " << p.power_resets << " pvid " << p.pvid << " in " << p.limit_in
        << " " << p.rate_in << " out " << p.limit_out << " " << p.rate_out << " qos " << p.cos
        << p.trust << " voice " << p.voice << p.voice_cos << " mark " << p.mark;
    return out.str();
}

ModelPort observed(const sim::Switch& s, std::size_t p) {
    ModelPort seen;
    const sim::Port& port = s.ports.port[p];
    seen.enable = port.enable;
    seen.isolated = port.isolated;
    seen.flow_control = port.flow_control;
    seen.automatic_speed = port.speed_automatic;
    seen.automatic_duplex = port.duplex_automatic;
    seen.forced_link = port.force_link;
    seen.speed = static_cast<int>(port.speed);
    seen.duplex = static_cast<int>(port.duplex);
    seen.media = static_cast<int>(port.media_10g);
    if (p < s.poe.ports.size()) {
        const sim::PoePort& poe = s.poe.ports[p];
        seen.poe = poe.enable;
        seen.by_class = poe.classification;
        seen.priority = poe.priority;
        seen.limit_type = poe.limit_type;
        seen.user_limit = poe.user_limit;
        seen.power_resets = poe.resets;
    }
    seen.pvid = s.vlans.pvid[p];
    seen.limit_in = s.rates.ports[p].ingress.enable;
    seen.limit_out = s.rates.ports[p].egress.enable;
    seen.rate_in = static_cast<int>(s.rates.ports[p].ingress.kbps);
    seen.rate_out = static_cast<int>(s.rates.ports[p].egress.kbps);
    seen.cos = static_cast<int>(s.qos.ports[p].cos);
    seen.trust = s.qos.ports[p].trust;
    seen.voice = s.voice_vlan.ports[p].enable;
    seen.voice_cos = s.voice_vlan.ports[p].cos_mode;
    seen.mark = gCattr.port_reset_flags[p] != 0;
    return seen;
}

Lines show_ports(const Model& model) {
    Lines lines;
    for (const ModelPort& port : model.ports)
        lines.push_back(show(port));
    return lines;
}

Lines show_ports(const sim::Switch& s) {
    Lines lines;
    for (std::size_t p = 0; p < port_count; ++p)
        lines.push_back(show(observed(s, p)));
    return lines;
}

std::string show(int vid, const Membership& vlan) {
    std::string text = std::to_string(vid) + ":";
    for (int p = 0; p < port_count; ++p)
        text += vlan.tagged.contains(p) ? 't' : vlan.untagged.contains(p) ? 'u' : '.';
    return text;
}

Lines show_vlans(const Model& model) {
    Lines lines;
    for (const auto& [vid, vlan] : model.vlans)
        lines.push_back(show(vid, vlan));
    return lines;
}

Lines show_vlans(const sim::Switch& s) {
    Lines lines;
    for (const auto& [vid, vlan] : s.vlans.table) {
        Membership seen;
        for (int p = 0; p < port_count; ++p) {
            if (sim::has_bit(vlan.tagged, p))
                seen.tagged.insert(p);
            if (sim::has_bit(vlan.untagged, p))
                seen.untagged.insert(p);
        }
        lines.push_back(show(vid, seen));
    }
    return lines;
}

// ---- Random documents

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}

    int upto(int high) { return std::uniform_int_distribution<int>(0, high)(engine_); }
    bool chance(int percent) { return upto(99) < percent; }
    template <class Values> auto one_of(const Values& values) {
        return *(std::begin(values) + upto(static_cast<int>(std::size(values)) - 1));
    }

    // Mostly up to `high`; now and then something odd.
    int number(int high) {
        static const int odd[] = {-1, 7, 8, 31, 255, 256, 287, 4095, 1000001, -2147483647};
        return chance(4) ? one_of(odd) : upto(high);
    }

    std::string id() {
        static const char* const bad[] = {"0", "trunk9", "Fx", "29", "", "trunk", "F-30", "port"};
        if (chance(4))
            return one_of(bad);
        int p = upto(port_count - 1);
        if (p >= first_group)
            return "trunk" + std::to_string(p - first_group + 1);
        if (p >= first_fibre)
            return "F" + std::to_string(p - first_fibre + 1);
        return std::to_string(p + 1);
    }

    std::string vlans() {
        static const char* const odd[] = {"x", "0", "4095", "9-", "8-6", "1;2", "0,7", "4094"};
        if (chance(8))
            return one_of(odd);
        std::string text;
        for (int i = upto(3), id = 1; i > 0; --i) {
            id += upto(4);
            text += (text.empty() ? "" : ",") + std::to_string(id);
            if (chance(30))
                text += "-" + std::to_string(id += 1 + upto(3));
            ++id;
        }
        return text;
    }

    Document element() {
        std::vector<std::pair<const char*, Document>> members;
        if (!chance(2))
            members.emplace_back("id", id());
        auto maybe = [&](const char* key, auto value) {
            if (chance(35))
                members.emplace_back(key, value());
        };
        auto flag = [&] { return chance(50); };
        maybe("enable", flag);
        maybe("reset", flag);
        maybe("isolation", flag);
        maybe("pvid", [&] { return chance(85) ? 1 : number(12); });
        maybe("poe", [&] { return poe(); });
        maybe("tagged_vlans", [&] { return vlans(); });
        maybe("untagged_vlans", [&] { return vlans(); });
        maybe("rate_limit", [&] { return rates(); });
        maybe("link_speed_mode", [&] { return number(5); });
        maybe("flow_control", flag);
        maybe("qos", [&] { return two("cos_value", number(7), "trust", flag()); });
        maybe("voice_vlan", [&] { return two("cos_mode", number(1), "enable", flag()); });
        std::shuffle(members.begin(), members.end(), engine_);
        Document made = Document::object();
        for (auto& [key, value] : members)
            made[key] = value;
        return made;
    }

    Document document() {
        Document made = Document::array();
        for (int i = upto(4); i >= 0; --i)
            made.push_back(element());
        return made;
    }

  private:
    Document two(const char* first, int number, const char* second, bool flag) {
        Document made = Document::object();
        if (chance(80))
            made[first] = number;
        if (chance(80))
            made[second] = flag;
        return made;
    }
    Document poe() {
        Document made = two("priority", number(3), "enable", chance(70));
        if (chance(50))
            made["power_limit_type"] = number(1);
        if (chance(50))
            made["power_limit_user"] = number(30);
        return made;
    }
    Document rates() {
        Document made = two("tx_limit_kbps", rate(), "enable_tx", chance(50));
        made.update(two("rx_limit_kbps", rate(), "enable_rx", chance(50)));
        return made;
    }
    int rate() { return chance(20) ? 0 : chance(3) ? number(15) : 16 + upto(999984); }

    std::mt19937 engine_;
};

class PortConfigModel : public OnBoard {
  protected:
    int apply(const Document& ports) {
        Json document(Document{{"ports", ports}}.dump());
        return vxc_port_set(document);
    }
    void set_voice(bool on, int vid) {
        device.voice_vlan.mode = on;
        device.voice_vlan.vid = vid;
    }
};

} // namespace

TEST_F(PortConfigModel, thousands_of_documents_leave_the_switch_as_the_model_says) {
    device.chip.change([](sim::ChipState& s) {
        s.trunks[0] = {sim::ChipTrunkMode::fixed, {1u << aggregated_port, 0, 0}};
    });
    Model model;
    Random random(20260101);
    int stopped = 0, skipped = 0;
    for (int turn = 0; turn < 3000; ++turn) {
        model.qos = device.qos.on = random.chance(50);
        model.voice = random.chance(50);
        model.voice_vid = random.upto(9) + 1;
        set_voice(model.voice, model.voice_vid);
        model.errors.clear();
        forget();
        Document document = random.document();
        int expected = model.apply(document);
        ASSERT_EQ(apply(document), expected) << turn << document;
        ASSERT_EQ(recorded(), model.errors) << turn << document;
        ASSERT_EQ(device.qos.on, model.qos) << turn << document;
        ASSERT_EQ(show_ports(device), show_ports(model)) << turn << document;
        ASSERT_EQ(show_vlans(device), show_vlans(model)) << turn << document;
        stopped += expected != 0;
        skipped += expected == 0 && !model.errors.empty();
    }
    // The documents are neither all good nor all bad.
    EXPECT_GT(stopped, 300);
    EXPECT_GT(skipped, 50);
    EXPECT_LT(stopped, 2000);
}

namespace {

// A switch on which every port has something of its own, in values that a report can tell.
void make_various(sim::Switch& s) {
    for (std::size_t p = 0; p < port_count; ++p) {
        sim::Port& port = s.ports.port[p];
        bool copper = p < first_fibre;
        static const std::uint32_t speeds[] = {2, 1, 1, 0, 0}, duplexes[] = {0, 0, 1, 0, 1};
        port.enable = p % 5 != 3;
        port.isolated = p % 3 == 1;
        port.flow_control = p % 4 == 2;
        port.speed_automatic = port.duplex_automatic = !copper || p % 6 == 5;
        port.speed = port.speed_automatic ? 5 : speeds[p % 6 % 5];
        port.duplex = port.duplex_automatic ? 0 : duplexes[p % 6 % 5];
        port.force_link = port.fibre;
        s.ports.program(p);
        s.rates.ports[p].ingress = {p % 2 == 0 && p < first_group, 1000000};
        s.rates.ports[p].egress = {p % 3 == 0 && p < first_group, 1000000};
        if (s.rates.ports[p].egress.enable)
            s.rates.ports[p].egress.kbps = static_cast<std::uint32_t>(64 * (p + 1));
        s.qos.ports[p] = {static_cast<std::uint32_t>(p % 8), p % 2 == 1};
        s.voice_vlan.ports[p].enable = p % 7 == 0;
        s.voice_vlan.ports[p].cos_mode = p % 2;
        for (int vid : {5, 6, 7, static_cast<int>(100 + p)}) {
            s.vlans.table[vid].name = "VLAN" + std::to_string(vid);
            if (vid >= 100 || p % 3 == static_cast<std::size_t>(vid % 3))
                sim::set_bit(s.vlans.table[vid].tagged, static_cast<int>(p), true);
        }
        s.vlans.pvid[p] = p % 2 ? 1 : static_cast<int>(100 + p);
    }
    for (std::size_t p = 0; p < s.poe.ports.size(); ++p) {
        sim::PoePort& poe = s.poe.ports[p];
        poe.enable = p % 4 != 1;
        poe.priority = p % 4;
        poe.limit_type = p % 2 ? 2 : 1;
        poe.classification = p % 2 == 0;
        poe.user_limit = static_cast<std::uint8_t>(5 * (p + 1));
    }
    s.voice_vlan.mode = 1;
    s.voice_vlan.vid = 6;
    s.chip.change([](sim::ChipState& chip) {
        chip.trunks[1] = {sim::ChipTrunkMode::lacp, {0x30, 0, 0}};
    });
}

Document port_report() {
    Document made = Document::parse(report_of(vxc_port_get).text);
    for (Document& port : made["ports"])
        port.erase("statistics"); // time passes while ports are bounced
    return made;
}

std::string configuration(sim::Switch& s) {
    return sim::write_fields([&](sim::Fields& f) { s.config(f); });
}

} // namespace

TEST_F(PortConfigModel, a_report_sent_back_as_settings_changes_nothing) {
    make_various(device);
    Document before = port_report();
    std::string configured = configuration(device);
    CapturedStdout printed;
    EXPECT_EQ(apply(before["ports"]), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(port_report().dump(), before.dump());
    EXPECT_EQ(configuration(device), configured);
}

namespace {

// Lists of both types with entries that use every member, bound to a few ports.
void make_lists(const std::function<void(const Document&)>& apply) {
    Document mac = Document::array(), ipv4 = Document::array();
    for (int i = 1; i <= 3; ++i) {
        mac.push_back(
            {{"acl_name", "m"},
             {"sequence", i * 10},
             {"method", 1},
             {"action", i % 2},
             {"vlan_id", i == 2 ? -1 : 100 + i},
             {"ethertype", i == 1 ? "" : "88CC"},
             {"source_mac", i == 3 ? "" : "02:00:00:00:00:11"},
             {"source_mask", i == 2 ? "FF:FF:FF:00:00:00" : ""},
             {"priority", i == 3 ? -1 : i}});
        ipv4.push_back(
            {{"acl_name", "i"},
             {"sequence", i},
             {"method", 1},
             {"action", i % 2},
             {"protocol", i == 1   ? 6
                          : i == 2 ? 1
                                   : 17},
             {"destination_ip", "192.0.2.0"},
             {"destination_mask", "255.255.255.0"},
             {"type_of_service", i == 2 ? -1 : 46},
             {"icmp_type", 8},
             {"icmp_code", i == 2 ? 0 : -1},
             {"source_port_first", i == 3 ? 1000 : -1},
             {"source_port_second", 2000},
             {"destination_port_first", i == 1 ? 443 : -1},
             {"tcp_flag_syn", 1},
             {"tcp_flag_ack", 2}});
    }
    Document names = {{{"name", "m"}, {"method", 1}}};
    apply({{"acl", {{"mac_acl", names}, {"mac_ace", mac}, {"ipv4_ace", Document::array()}}}});
    names[0]["name"] = "i";
    apply({{"acl", {{"ipv4_acl", names}, {"ipv4_ace", ipv4}}}});
    Document bound = Document::array();
    for (const char* id : {"1", "18", "F2", "trunk8"})
        bound.push_back({{"id", id}, {"acl", {{"mac", "m"}, {"ipv4", "i"}}}});
    apply({{"system", {{"ports", bound}}}});
}

Document whole_report() {
    Json made(createJsonObject());
    vxc_get(made);
    Document report = Document::parse(compact(made));
    report["system"]["summary_info"].erase("uptime_seconds");
    for (Document& port : report["system"]["ports"])
        port.erase("statistics");
    return report;
}

} // namespace

TEST_F(PortConfigModel, the_report_of_a_whole_switch_sent_back_changes_nothing) {
    auto send = [](const Document& settings) {
        CapturedStdout printed;
        Json document(settings.dump());
        vxc_set(document);
    };
    make_various(device);
    make_lists(send);
    ASSERT_EQ(recorded(), Codes{});
    Document before = whole_report();
    ASSERT_EQ(before["acl"]["mac_ace"].size() + before["acl"]["ipv4_ace"].size(), 6u);
    ASSERT_EQ(before["system"]["ports"][27]["acl"]["ipv4"], "i");
    std::string configured = configuration(device);
    Document settings = {{"acl", before["acl"]}, {"vlan", before["vlan"]}};
    settings["system"]["ports"] = before["system"]["ports"];
    for (const char* entries : {"mac_ace", "ipv4_ace"})
        for (Document& entry : settings["acl"][entries])
            entry["method"] = 2;
    forget();
    send(settings);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(log(), Lines{});
    EXPECT_EQ(whole_report().dump(), before.dump());
    EXPECT_EQ(configuration(device), configured);
    // As they stand, entries say nothing of what is to be done with them.
    forget();
    send({{"acl", before["acl"]}});
    EXPECT_EQ(recorded(), Codes(6, 19));
    EXPECT_EQ(whole_report()["acl"], before["acl"]);
    EXPECT_EQ(configuration(device), configured);
}
