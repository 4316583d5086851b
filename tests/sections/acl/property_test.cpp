// Thousands of random access list documents, sound and not, on a board and on a model of it that
// knows nothing but the wire: lists and entries as the report shows them.
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "sections/acl/bindings.h"
#include "sections/acl/lists.h"
#include "tests/sections/acl/support.h"

namespace {

using Value = nlohmann::ordered_json;

constexpr int ports = 28;
constexpr std::size_t room_for_entries = 10; // of a type
constexpr std::size_t room_for_lists = 4;

// What comes of a text: its form in the report, or none if it is refused.
const std::map<std::string, std::string> mac_texts = {
    {"02:00:00:00:00:01", "02:00:00:00:00:01"},
    {"02:ab:cd:ef:00:01", "02:AB:CD:EF:00:01"},
    {"FF-FF-FF-00-00-00", "FF:FF:FF:00:00:00"},
    {"02:00:00:00:00", ""},
    {"2:0:0:0:0:1", ""},
};
const std::map<std::string, std::string> ip_texts = {
    {"192.0.2.1", "192.0.2.1"}, {"255.255.255.0", "255.255.255.0"},
    {"0.0.0.0", "0.0.0.0"},     {"192.0.2", ""},
    {"192.0.2.400", ""},
};
const std::map<std::string, std::string> ethertype_texts = {
    {"0600", "0600"}, {"ffff", "FFFF"}, {"0x86DD", "86DD"}, {"05FF", ""}, {"10000", ""}, {"x", ""},
};

const char* const tcp_flags[] = {"tcp_flag_urg", "tcp_flag_ack", "tcp_flag_psh",
                                 "tcp_flag_rst", "tcp_flag_syn", "tcp_flag_fin"};

// --- The model.

struct ModelList {
    std::string name;
    int type;
    std::map<int, Value> entries; // by sequence, as reported
};

class Model {
  public:
    std::vector<ModelList> lists;
    std::map<int, std::map<int, std::string>> bound{{1, {}}, {2, {}}}; // names by type and port
    std::vector<int> errors;

    void apply(const Value& document) {
        remembered_.clear();
        for (const Value& item : items(document, "mac_acl"))
            change_list(1, item);
        if (document.contains("mac_ace"))
            change_entries(1, document["mac_ace"]);
        for (const Value& item : items(document, "ipv4_acl"))
            change_list(2, item);
        if (document.contains("ipv4_ace"))
            change_entries(2, document["ipv4_ace"]);
    }

    void bind_port(int port, const Value& mac, const Value& ipv4) {
        if (bind_port(port, 1, mac))
            bind_port(port, 2, ipv4);
    }

    Value report() const {
        Value acl;
        for (int type : {1, 2}) {
            Value names = Value::array();
            Value entries = Value::array();
            for (const ModelList& list : lists) {
                if (list.type != type)
                    continue;
                names.push_back({{"name", list.name}});
                for (const auto& [sequence, entry] : list.entries)
                    entries.push_back(entry);
            }
            acl[type == 1 ? "mac_acl" : "ipv4_acl"] = names;
            acl[type == 1 ? "mac_ace" : "ipv4_ace"] = entries;
        }
        return {{"acl", acl}};
    }

  private:
    struct Refused {
        int code;
    };
    struct Ended {
        int code;
    };

    static Value items(const Value& document, const char* key) {
        return document.contains(key) ? document[key] : Value::array();
    }

    ModelList* find(const std::string& name) {
        for (ModelList& list : lists)
            if (list.name == name)
                return &list;
        return nullptr;
    }

    bool is_bound(const ModelList& list) {
        for (const auto& [port, name] : bound[list.type])
            if (name == list.name)
                return true;
        return false;
    }

    void change_list(int type, const Value& item) {
        if (!item.contains("name") || !item["name"].is_string() || !item.contains("method"))
            return;
        std::string name = item["name"];
        if (item["method"] == 0)
            delete_list(type, name);
        else if (item["method"] == 1)
            create_list(type, name);
    }

    void delete_list(int type, const std::string& name) {
        bound[type].clear();
        ModelList* list = find(name);
        if (!list || list->type != type)
            errors.push_back(sim::code_not_found);
        else
            lists.erase(lists.begin() + (list - lists.data()));
    }

    void create_list(int type, const std::string& name) {
        std::size_t count = 0;
        for (const ModelList& list : lists)
            count += list.type == type;
        ModelList* list = find(name);
        if (list && list->type == type)
            return;
        if (name.empty())
            errors.push_back(sim::code_bad_text);
        else if (list)
            errors.push_back(sim::code_exists);
        else if (count >= room_for_lists)
            errors.push_back(sim::code_table_full);
        else
            lists.push_back({name, type, {}});
    }

    void change_entries(int type, const Value& entries) {
        try {
            for (const Value& item : entries)
                change_entry(type, item);
        } catch (const Ended& end) {
            errors.push_back(end.code);
            return;
        }
        put_back(type);
    }

    void change_entry(int type, const Value& item) {
        bool complete = item.contains("acl_name") && item["acl_name"].is_string() &&
                        item.contains("sequence") && item.contains("method");
        try {
            if (!complete)
                throw Refused{19};
            switch (item["method"].get<int>()) {
            case 0:
                take_off(type, item["acl_name"]);
                remove(item["acl_name"], item["sequence"]);
                break;
            case 1:
                create(type, item);
                break;
            case 2:
                modify(type, item);
                break;
            }
        } catch (const Refused& refusal) {
            errors.push_back(refusal.code);
        }
    }

    void remove(const std::string& name, int sequence) {
        ModelList* list = find(name);
        if (!list)
            throw Ended{sim::code_not_found};
        if (is_bound(*list))
            throw Ended{sim::code_busy};
        if (!list->entries.erase(sequence))
            throw Ended{sim::code_not_found};
    }

    static Value blank(int type, const Value& item) {
        Value entry{{"acl_name", item["acl_name"]}, {"sequence", item["sequence"]}, {"action", 0}};
        if (type == 1) {
            for (const char* key :
                 {"destination_mac", "destination_mask", "source_mac", "source_mask"})
                entry[key] = "";
            entry["vlan_id"] = -1;
            entry["priority"] = -1;
            entry["ethertype"] = "";
            return entry;
        }
        entry["protocol"] = -1;
        for (const char* key : {"destination_ip", "destination_mask", "source_ip", "source_mask"})
            entry[key] = "";
        for (const char* key :
             {"type_of_service", "icmp_type", "icmp_code", "source_port_first",
              "source_port_second", "destination_port_first", "destination_port_second"})
            entry[key] = -1;
        for (const char* flag : tcp_flags)
            entry[flag] = 0;
        return entry;
    }

    void create(int type, const Value& item) {
        std::size_t used = 0;
        for (const ModelList& list : lists)
            used += list.type == type ? list.entries.size() : 0;
        if (used >= room_for_entries)
            throw Refused{-1};
        if (!item.contains("action"))
            throw Refused{19};
        Value entry = blank(type, item);
        read(type, item, entry);
        take_off(type, item["acl_name"]);
        ModelList* list = find(item["acl_name"]);
        int sequence = item["sequence"];
        if (!list)
            throw Refused{sim::code_not_found};
        if (is_bound(*list))
            throw Refused{sim::code_busy};
        if (list->type != type || sequence < 1 || !is_action(item["action"]))
            throw Refused{sim::code_bad_value};
        if (list->entries.count(sequence))
            throw Refused{sim::code_exists};
        list->entries[sequence] = entry;
    }

    void modify(int type, const Value& item) {
        ModelList* list = find(item["acl_name"]);
        if (!list || list->type != type)
            throw Ended{sim::code_not_found};
        auto found = list->entries.find(item["sequence"]);
        if (found == list->entries.end())
            throw Refused{19};
        Value entry = found->second;
        read(type, item, entry);
        take_off(type, item["acl_name"]);
        if (is_bound(*list))
            throw Ended{sim::code_busy};
        if (!item.contains("action") || is_action(item["action"]))
            found->second = entry; // otherwise the platform refuses it, and the old one stays
    }

    static bool is_action(int action) { return action == 0 || action == 1; }

    // --- Values.

    static void number(const Value& item, Value& entry, const char* key, int low, int high) {
        if (!item.contains(key))
            return;
        int value = item[key];
        if (value != -1 && (value < low || value > high))
            throw Refused{19};
        entry[key] = value;
    }

    static std::string parsed(const std::map<std::string, std::string>& texts, const Value& text) {
        auto known = texts.find(text);
        if (known == texts.end())
            return text; // as a report had it
        if (known->second.empty())
            throw Refused{sim::code_bad_text};
        return known->second;
    }

    static void address(
        const Value& item, Value& entry, const char* key, const char* mask,
        const std::map<std::string, std::string>& texts, const char* ones) {
        bool was_any = entry[key] == "";
        if (item.contains(key) ? item[key] == "" : was_any) {
            entry[key] = entry[mask] = "";
            return;
        }
        if (item.contains(key))
            entry[key] = parsed(texts, item[key]);
        if (item.contains(mask) ? item[mask] == "" : was_any)
            entry[mask] = ones;
        else if (item.contains(mask))
            entry[mask] = parsed(texts, item[mask]);
    }

    static void pair(const Value& item, Value& entry, const char* first, const char* second) {
        if (!item.contains(first))
            return;
        int from = item[first];
        int to = from != -1 && item.contains(second) ? item[second].get<int>() : -1;
        if (from != -1 && (from < 0 || from > 65535))
            throw Refused{19};
        if (to != -1 && (to < from || to > 65535))
            throw Refused{19};
        entry[first] = from;
        entry[second] = to;
    }

    static void read(int type, const Value& item, Value& entry) {
        if (item.contains("action"))
            entry["action"] = item["action"] == 0 ? 0 : 1;
        type == 1 ? read_mac(item, entry) : read_ipv4(item, entry);
    }

    static void read_mac(const Value& item, Value& entry) {
        number(item, entry, "vlan_id", 1, 4094);
        if (item.contains("ethertype")) {
            std::string text = item["ethertype"];
            auto known = ethertype_texts.find(text);
            if (known != ethertype_texts.end() && known->second.empty())
                throw Refused{19};
            entry["ethertype"] = known == ethertype_texts.end() ? text : known->second;
        }
        const char* ones = "FF:FF:FF:FF:FF:FF";
        address(item, entry, "destination_mac", "destination_mask", mac_texts, ones);
        address(item, entry, "source_mac", "source_mask", mac_texts, ones);
        number(item, entry, "priority", 0, 7);
    }

    static void read_ipv4(const Value& item, Value& entry) {
        if (item.contains("protocol"))
            entry["protocol"] = item["protocol"];
        number(item, entry, "type_of_service", 0, 63);
        const char* ones = "255.255.255.255";
        address(item, entry, "destination_ip", "destination_mask", ip_texts, ones);
        address(item, entry, "source_ip", "source_mask", ip_texts, ones);
        if (entry["protocol"] == 1)
            number(item, entry, "icmp_type", 0, 255);
        number(item, entry, "icmp_code", 0, 255);
        pair(item, entry, "source_port_first", "source_port_second");
        pair(item, entry, "destination_port_first", "destination_port_second");
        if (entry["protocol"] != 6)
            return;
        for (const char* flag : tcp_flags)
            if (item.contains(flag))
                entry[flag] = item[flag] == 1 || item[flag] == 2 ? item[flag] : Value(0);
    }

    // --- Ports.

    void take_off(int type, const std::string& name) {
        if (recovering_)
            for (const auto& [port, other] : remembered_[type])
                if (other.starts_with(name))
                    return;
        std::erase_if(bound[type], [&](const auto& at) {
            if (!at.second.starts_with(name))
                return false;
            remembered_[type][at.first] = at.second;
            recovering_ = true;
            return true;
        });
    }

    void put_back(int type) {
        if (!recovering_)
            return;
        for (const auto& [port, name] : remembered_[type])
            if (!find(name)->entries.empty())
                bound[type][port] = name;
        remembered_[type].clear();
        recovering_ = false;
    }

    bool bind_port(int port, int type, const Value& wanted) {
        if (wanted.is_null())
            return true;
        std::string name = wanted;
        if (name.empty()) {
            bound[type].erase(port);
            return true;
        }
        auto now = bound[type].find(port);
        if (now != bound[type].end() && now->second == name)
            return true;
        ModelList* list = find(name);
        if (!list || list->type != type) {
            errors.push_back(sim::code_not_found);
            return false;
        }
        if (!list->entries.empty())
            bound[type][port] = name;
        return true;
    }

    std::map<int, std::map<int, std::string>> remembered_;
    bool recovering_ = false;
};

// --- Random documents.

class Author {
  public:
    Author(unsigned seed, std::vector<std::string> names)
        : random_(seed), names_(std::move(names)) {}

    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    bool chance(int percent) { return below(100) < percent; }
    template <class Choices> auto one_of(const Choices& choices) {
        return *std::next(std::begin(choices), below(static_cast<int>(std::size(choices))));
    }
    int one_of(std::initializer_list<int> choices) {
        return choices.begin()[below(static_cast<int>(choices.size()))];
    }

    Value document() {
        Value acl = Value::object();
        if (chance(50))
            acl["mac_acl"] = list_items();
        if (chance(80))
            acl["mac_ace"] = entry_items(1);
        if (chance(50))
            acl["ipv4_acl"] = list_items();
        if (chance(80))
            acl["ipv4_ace"] = entry_items(2);
        return acl;
    }

    Value port_name() {
        if (chance(20))
            return nullptr;
        return chance(15) ? Value("") : Value(one_of(names_));
    }

  private:
    Value list_items() {
        Value items = Value::array();
        for (int i = below(4); i > 0; --i) {
            Value item = Value::object();
            if (chance(95))
                item["name"] = chance(3) ? Value("") : chance(3) ? Value(7) : Value(one_of(names_));
            if (chance(95))
                item["method"] = chance(70) ? 1 : one_of({0, 0, 2, -1});
            items.push_back(item);
        }
        return items;
    }

    Value entry_items(int type) {
        Value items = Value::array();
        for (int i = below(8); i > 0; --i) {
            Value item = Value::object();
            if (chance(98))
                item["acl_name"] = chance(2) ? Value("") : Value(one_of(names_));
            if (chance(98))
                item["sequence"] = chance(3) ? one_of({0, -5}) : 1 + below(5);
            if (chance(98))
                item["method"] = chance(85) ? one_of({1, 1, 2, 2, 2}) : one_of({0, 0, 0, 3});
            if (chance(85))
                item["action"] = chance(95) ? below(2) : one_of({2, -1});
            type == 1 ? mac_members(item) : ipv4_members(item);
            items.push_back(item);
        }
        return items;
    }

    // Values that are refused are rare, for an entry has many.
    void number(Value& item, const char* key, std::initializer_list<int> good, int bad) {
        if (chance(40))
            item[key] = chance(3) ? bad : one_of(good);
    }

    void text(Value& item, const char* key, const std::map<std::string, std::string>& texts) {
        if (!chance(40))
            return;
        auto pick = one_of(texts);
        bool refused = pick.second.empty();
        item[key] = chance(25) || (refused && !chance(15)) ? "" : pick.first;
    }

    void mac_members(Value& item) {
        number(item, "vlan_id", {-1, 1, 20, 4094}, one_of({0, 4095, -2}));
        number(item, "priority", {-1, 0, 7}, one_of({8, -2}));
        text(item, "ethertype", ethertype_texts);
        for (const char* key : {"destination_mac", "destination_mask", "source_mac", "source_mask"})
            text(item, key, mac_texts);
    }

    void ipv4_members(Value& item) {
        if (chance(60))
            item["protocol"] = one_of({-1, 1, 1, 6, 6, 17});
        number(item, "type_of_service", {-1, 0, 63}, 64);
        number(item, "icmp_type", {-1, 0, 255}, 256);
        number(item, "icmp_code", {-1, 0, 255}, -2);
        for (const char* key : {"destination_ip", "destination_mask", "source_ip", "source_mask"})
            text(item, key, ip_texts);
        // Few pairs, so that the driver has room for all their ranges.
        number(item, "source_port_first", {-1, 0, 1000}, 65536);
        number(item, "source_port_second", {-1, 1000, 1000}, one_of({-2, 65536}));
        number(item, "destination_port_first", {-1, 53, 1000}, -2);
        number(item, "destination_port_second", {-1, 1000, 1000}, 52);
        for (const char* flag : tcp_flags)
            if (chance(30))
                item[flag] = one_of({0, 1, 2, 3});
    }

    std::mt19937 random_;
    std::vector<std::string> names_;
};

// --- Board and model side by side.

class AclProperty : public OnBoardWithLists {
  protected:
    void SetUp() override {
        device.acl.entry_capacity = room_for_entries;
        device.acl.list_capacity = room_for_lists;
    }

    bool same() {
        EXPECT_EQ(Value::parse(report_of(vxc_acl_get).text), model.report());
        for (int type : {1, 2})
            for (int port = 0; port < ports; ++port) {
                auto at = model.bound[type].find(port);
                std::string expected = at == model.bound[type].end() ? "" : at->second;
                EXPECT_EQ(bound(static_cast<std::uint32_t>(type), port), expected) << port;
            }
        EXPECT_EQ(recorded(), model.errors);
        return !HasFailure();
    }

    void apply(const Value& document) {
        Json json(document.dump());
        EXPECT_EQ(vxc_acl_set(json), 0);
        model.apply(document);
    }

    void bind_some(Author& author) {
        for (int i = 0; i < 4; ++i) {
            Value mac = author.port_name();
            Value ipv4 = author.port_name();
            int port = author.below(ports);
            auto text = [](const Value& v) {
                return v.is_null() ? nullptr : v.get_ref<const std::string&>().c_str();
            };
            vxc_acl_port_bind(port, text(mac), ACL_IPV4, text(ipv4));
            model.bind_port(port, mac, ipv4);
        }
    }

    Value report_as_settings() {
        Value acl = Value::parse(report_of(vxc_acl_get).text)["acl"];
        for (const char* key : {"mac_ace", "ipv4_ace"})
            for (Value& entry : acl[key])
                entry["method"] = 2;
        return acl;
    }

    void start_afresh() {
        forget();
        model.errors.clear();
    }

    Model model;
};

} // namespace

TEST_F(AclProperty, random_documents_do_to_the_switch_what_they_do_to_the_model) {
    Author author(20261, {"A", "AB", "ABC", "B", "Guests"});
    std::size_t most_entries = 0;
    for (int round = 0; round < 1500; ++round) {
        start_afresh();
        Value document = author.document();
        apply(document);
        bind_some(author);
        ASSERT_TRUE(same()) << "round " << round << ": " << document;
        most_entries = std::max(most_entries, device.acl.entries(ACL_IPV4));
    }
    EXPECT_EQ(most_entries, room_for_entries); // the documents do fill the tables
}

TEST_F(AclProperty, any_report_fed_back_as_settings_changes_nothing) {
    Author author(7, {"Aa", "Ba", "Ca", "Da", "Guests"}); // none begins with another
    std::size_t bound_lists = 0;
    for (int round = 0; round < 300; ++round) {
        apply(author.document());
        bind_some(author);
        Value before = model.report();
        auto bound_before = model.bound;
        auto ranges_before = device.chip.state().acl_ranges();
        start_afresh();
        apply(report_as_settings());
        ASSERT_TRUE(same()) << round;
        ASSERT_EQ(model.report(), before) << round;
        ASSERT_EQ(model.bound, bound_before) << round;
        ASSERT_EQ(device.chip.state().acl_ranges(), ranges_before) << round;
        ASSERT_EQ(recorded(), Codes{}) << round;
        bound_lists += bound_before[1].size() + bound_before[2].size();
    }
    EXPECT_GT(bound_lists, 300u);
}
