// Texts of the world: platforms, neighbours and commands hand over any bytes, and a report is valid
// JSON in valid UTF-8 all the same, in every member that is a text. Which members these are is told
// by the schema, so a new one is not forgotten.
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "base/state.h"
#include "core/dispatch.h"
#include "json/json_print.h"
#include "platform/acl.h"
#include "platform/firmware.h"
#include "sections/diagnostic.h"
#include "tests/support/on_board.h"

namespace {

using Tree = nlohmann::json;

// --- What the schema says of texts.

// A member that is a text: its path, with [] for the elements of an array, and its form, if it has
// one.
struct TextMember {
    std::string path;
    std::string pattern;
    std::regex form;
    bool enumerated = false;
};

class Schema {
  public:
    Schema() : schema_(Tree::parse(std::ifstream(REPORT_SCHEMA))) { walk(schema_, ""); }

    const std::vector<TextMember>& texts() const { return texts_; }

  private:
    Tree resolved(Tree node) const {
        while (node.contains("$ref")) {
            const std::string name = node["$ref"];
            Tree target = schema_.at(Tree::json_pointer(name.substr(1)));
            node.erase("$ref");
            target.update(node);
            node = target;
        }
        return node;
    }

    void walk(const Tree& reference, const std::string& path) {
        const Tree node = resolved(reference);
        if (node.value("type", Tree()) == "string" || has_text_value(node))
            add(path, node);
        for (const char* part : {"anyOf", "oneOf", "allOf"}) {
            const Tree kinds = node.value(part, Tree::array());
            for (const Tree& kind : kinds)
                walk(kind, path);
        }
        if (node.contains("items"))
            walk(node["items"], path + "[]");
        const Tree members = node.value("properties", Tree::object());
        for (const auto& [key, value] : members.items())
            walk(value, path + "/" + key);
    }

    void add(const std::string& path, const Tree& node) {
        const std::string pattern = node.value("pattern", "");
        texts_.push_back({path, pattern, std::regex(pattern), has_text_value(node)});
    }

    static bool has_text_value(const Tree& node) {
        const Tree values = node.value("enum", Tree::array({node.value("const", Tree())}));
        return std::ranges::any_of(values, [](const Tree& value) { return value.is_string(); });
    }

    Tree schema_;
    std::vector<TextMember> texts_;
};

// Texts that the agent itself makes. No byte of anybody else's is in them.
const std::set<std::string> own_texts = {
    "/system/summary_info/model",       "/lldp/local/chassis_id_subtype",
    "/lldp/local/port_id_subtype",      "/lldp/local/system_description",
    "/lldp/local/capabilities_enabled", "/lldp/local/capabilities_supported"};

// --- Hostile texts.

constexpr char marker[] = "Zq"; // by which a text is known again, however its bytes were replaced
constexpr std::size_t most_bytes = 30;

// Every byte there is but the terminator, in texts of a list name's length; letters that are cut at
// the end of their place; and what is no letter at all.
std::vector<std::string> hostile_texts() {
    std::vector<std::string> texts;
    for (int first = 1; first < 256; first += static_cast<int>(most_bytes)) {
        std::string text = marker;
        for (int byte = first; byte < std::min(256, first + static_cast<int>(most_bytes)); ++byte)
            text += static_cast<char>(byte);
        texts.push_back(text);
    }
    for (const char* letter :
         {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xED\xA0\x80", "\xC0\x80"})
        for (std::size_t shift = 0; shift < 2; ++shift) {
            std::string text = marker + std::string(shift, 'a');
            while (text.size() < sizeof marker + most_bytes)
                text += letter;
            texts.push_back(text.substr(0, sizeof marker - 1 + most_bytes));
        }
    return texts;
}

std::string hostile_version; // what the platform's filter shows

void put_state(char* place, std::size_t size, const std::string& text) {
    std::snprintf(place, size, "%s", text.c_str());
}

// Every text of a report, by its path.
using Reported = std::vector<std::pair<std::string, std::string>>;

class Texts : public OnBoard {
  protected:
    // A switch on which whatever hands over texts hands over this one.
    void fill(const std::string& text) {
        std::destroy_at(&device);
        std::construct_at(&device, 12);
        hostile_version = text;
        device.system.name = device.system.firmware_version = text;
        put_state(CheckinHost, HOST_SIZE, text);
        put_state(fallback_host, HOST_SIZE, text);
        put_state(ConnectionKeeperHost, KEEPER_HOST_SIZE, text);
        device.snmp.communities[0].name = text.substr(0, 32);
        device.snmp.communities[0].internal = false;
        device.snmp.targets[0] = {text, SNMP_VERSION_V2C, SNMP_TRAP_V2C, text.substr(0, 32)};
        device.voice_vlan.mode = 1;
        device.voice_vlan.vid = 1;
        device.voice_vlan.ouis[0].description = text.substr(0, 32);
        device.voice_vlan.ouis[0].in_use = true;
        device.lldp.neighbours = {neighbour(text)};
        bind_list(ACL_MAC, "M", text.substr(0, 31) + "M");
        bind_list(ACL_IPV4, "I", text.substr(0, 31) + "I");
        put_file(ping_output, text + "\n" + text);
        put_file("/tmp/traceroute_tmp0", text + "\n" + text);
        ping_status = traceroute_status = DIAGNOSTIC_READY;
    }

    Reported report() {
        Json document(createJsonObject());
        vxc_get(document);
        std::unique_ptr<char, decltype(&std::free)> printed(printJson(document), &std::free);
        EXPECT_TRUE(Tree::accept(printed.get())) << printed.get(); // strict about UTF-8, too
        Reported texts;
        collect(Tree::parse(printed.get(), nullptr, false), "", texts);
        return texts;
    }

  private:
    static sim::LldpPeer neighbour(const std::string& text) {
        sim::LldpPeer peer;
        peer.chassis_id_subtype = peer.port_id_subtype = text.substr(0, 31);
        peer.chassis_id = peer.port_id = peer.system_name = text;
        peer.advertised_capabilities = peer.operational_mau_type = text;
        return peer;
    }

    // The simulated library takes printable names alone, so a list gets its name when it is there.
    void bind_list(std::uint32_t type, const char* plain, const std::string& name) {
        Ace entry = {};
        entry.sequence = entry.action = 1;
        entry.type = type;
        if (type == ACL_IPV4)
            entry.match.ipv4.action_valid = 1;
        AclPortBinding binding = {};
        binding.type = type;
        std::snprintf(binding.name[type], sizeof binding.name[type], "%s", plain);
        ASSERT_EQ(sal_acl_entry_create(plain, type), 0);
        ASSERT_EQ(sal_ace_entry_create(plain, &entry), 0);
        ASSERT_EQ(sal_acl_entry_bind(&binding, {{1, 0, 0}}), 0);
        device.acl.find(plain)->name = name;
        device.acl.bound[0][type] = name;
    }

    static void collect(const Tree& node, const std::string& path, Reported& texts) {
        if (node.is_string())
            texts.emplace_back(path, node.get<std::string>());
        if (node.is_array())
            for (const Tree& item : node)
                collect(item, path + "[]", texts);
        if (node.is_object())
            for (const auto& [key, value] : node.items())
                collect(value, path + "/" + key, texts);
    }
};

} // namespace

// The library's own filter of versions lets everything pass, here.
extern "C" int __wrap_sal_filter_ver_get(const char* raw_version, char* version) {
    static_cast<void>(raw_version);
    std::snprintf(version, FW_VERSION_SIZE, "%s", hostile_version.c_str());
    return 0;
}

namespace {

// What of a report belongs to a member.
std::vector<std::string> texts_at(const Reported& report, const std::string& path) {
    std::vector<std::string> found;
    for (const auto& [at, text] : report)
        if (at == path)
            found.push_back(text);
    return found;
}

bool holds_marker(const std::string& text) { return text.find(marker) != std::string::npos; }

// The neighbour's chassis id has a form, for the agent makes it printable, and is anybody's text.
bool is_free(const TextMember& member) {
    return !member.enumerated &&
           (member.pattern.empty() || member.path == "/lldp/remote[]/chassis_id");
}

void judge(const TextMember& member, const std::vector<std::string>& texts) {
    const bool own = own_texts.contains(member.path);
    if (is_free(member)) {
        EXPECT_EQ(std::ranges::any_of(texts, holds_marker), !own) << member.path;
    }
    for (const std::string& text : texts) {
        EXPECT_TRUE(std::regex_search(text, member.form)) << member.path << ": " << text;
    }
}

TEST_F(Texts, of_any_bytes_reach_every_member_of_a_report_that_is_json_in_utf8) {
    const Schema schema;
    ASSERT_GT(schema.texts().size(), 40u);
    for (const std::string& text : hostile_texts()) {
        fill(text);
        const Reported reported = report();
        for (const TextMember& member : schema.texts())
            judge(member, texts_at(reported, member.path));
    }
}

} // namespace
