#include "fleet/fleetfile.h"

#include <fmt/core.h>

#include <toml++/toml.h>
#include <algorithm>
#include <set>
#include <stdexcept>
#include <string_view>

namespace lab {

namespace {

constexpr int MostSessions = 1000;

/// A table of the file, whose keys are asked for one after the other.
class Section {
  public:
    Section(const std::string& path, const toml::table& table) : m_path(path), m_table(table) {}

    [[noreturn]] void fail(const toml::node& node, const std::string& reason) const {
        throw std::runtime_error(fmt::format("{}:{}: {}", m_path, node.source().begin.line, reason));
    }
    [[noreturn]] void fail(const std::string& reason) const { fail(m_table, reason); }

    /// Leaves `value` as it is where the key is not there.
    void text(const char* name, std::string& value) {
        m_known.insert(name);
        if (const toml::node* node = m_table.get(name)) {
            const auto found = node->value_exact<std::string>();
            if (!found) {
                fail(*node, fmt::format("\"{}\" is a text", name));
            }
            value = *found;
        }
    }

    void number(const char* name, int& value, int least, int most) {
        m_known.insert(name);
        if (const toml::node* node = m_table.get(name)) {
            const auto found = node->value_exact<std::int64_t>();
            if (!found || *found < least || *found > most) {
                fail(*node, fmt::format("\"{}\" is a whole number from {} to {}", name, least, most));
            }
            value = static_cast<int>(*found);
        }
    }

    void texts(const char* name, std::vector<std::string>& values) {
        m_known.insert(name);
        const toml::node* node = m_table.get(name);
        if (node == nullptr) {
            return;
        }
        const toml::array* array = node->as_array();
        if (array == nullptr) {
            fail(*node, fmt::format("\"{}\" is a list of texts", name));
        }
        values.clear();
        for (const toml::node& element : *array) {
            const auto found = element.value_exact<std::string>();
            if (!found) {
                fail(element, fmt::format("\"{}\" is a list of texts", name));
            }
            values.push_back(*found);
        }
    }

    /// A text that becomes an option of sbatch.
    void option(const char* name, std::string& value) {
        text(name, value);
        checkOption(name, value);
    }
    void checkOption(const char* name, const std::string& value) const {
        if (std::any_of(value.begin(), value.end(),
                        [](char c) { return c <= ' ' || c > '~' || c == '"' || c == '\\' || c == '\''; })) {
            const toml::node* node = m_table.get(name);
            fail(node != nullptr ? *node : m_table,
                 fmt::format("\"{}\" has a blank, a quote or worse", name));
        }
    }

    void wishes(JobWishes& wishes) {
        option("partition", wishes.partition);
        option("time-limit", wishes.timeLimit);
        option("cpu-freq", wishes.cpuFrequency);
        texts("sbatch", wishes.options);
        for (const std::string& one : wishes.options) {
            checkOption("sbatch", one);
        }
    }

    void other(const char* name) { m_known.insert(name); }

    /// After the last key was asked for.
    void end() const {
        for (const auto& [key, node] : m_table) {
            if (!m_known.contains(key.str())) {
                fail(node, fmt::format("\"{}\" is no key here", key.str()));
            }
        }
    }

  private:
    const std::string& m_path;
    const toml::table& m_table;
    std::set<std::string_view> m_known;
};

bool isFileName(const std::string& name) {
    constexpr std::string_view allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
    return !name.empty() && name.find_first_not_of(allowed) == std::string::npos && name.front() != '.' &&
           name.front() != '-';
}

Kind readKind(Section& section, Kind kind) {
    section.text("name", kind.name);
    section.option("node", kind.node);
    section.option("constraint", kind.constraint);
    section.text("host", kind.host);
    section.number("core", kind.core, 0, 100000);
    section.texts("keys", kind.keys);
    section.number("sessions", kind.sessions, 1, MostSessions);
    section.wishes(kind.wishes);
    section.end();
    if (!isFileName(kind.name)) {
        section.fail("a kind has a \"name\" of letters, digits, \".\", \"_\" and \"-\"");
    }
    if (!kind.node.empty() && !kind.constraint.empty()) {
        section.fail("kind " + kind.name + " has a \"node\" or a \"constraint\", not both");
    }
    if (kind.node.find_first_of("[,") != std::string::npos) {
        section.fail("kind " + kind.name + ": one node; several are told by a \"constraint\"");
    }
    if (kind.host.starts_with("-")) {
        section.fail("kind " + kind.name + ": \"" + kind.host + "\" is no host");
    }
    return kind;
}

void readKinds(FleetFile& fleet, const std::string& path, const toml::table& table, const Kind& usual) {
    const toml::array* kinds = table["kind"].as_array();
    if (kinds == nullptr || !kinds->is_array_of_tables()) {
        throw std::runtime_error(path + ": lists no [[kind]]");
    }
    std::set<std::string> names;
    for (const toml::node& node : *kinds) {
        Section section(path, *node.as_table());
        fleet.kinds.push_back(readKind(section, usual));
        if (!names.insert(fleet.kinds.back().name).second) {
            section.fail("a second kind " + fleet.kinds.back().name);
        }
    }
}

}  // namespace

int FleetFile::sessions() const {
    int sessions = 0;
    for (const Kind& kind : kinds) {
        sessions += kind.sessions;
    }
    return sessions;
}

FleetFile readFleetFile(const std::string& path) {
    toml::table table;
    try {
        table = toml::parse_file(path);
    } catch (const toml::parse_error& error) {
        throw std::runtime_error(
            fmt::format("{}:{}: {}", path, error.source().begin.line, error.description()));
    }
    FleetFile fleet;
    Kind usual;
    Section top(path, table);
    std::string staging = "folder";
    top.option("folder", fleet.folder);
    top.text("staging", staging);
    top.texts("files", fleet.files);
    top.number("sessions", usual.sessions, 1, MostSessions);
    top.wishes(usual.wishes);
    top.other("kind");
    top.other("ssh");
    top.end();
    if (fleet.folder.empty() || fleet.folder.front() != '/') {
        top.fail("\"folder\" is an absolute path");
    }
    if (staging != "folder" && staging != "sbcast") {
        top.fail("\"staging\" is \"folder\" or \"sbcast\"");
    }
    fleet.broadcast = staging == "sbcast";
    if (const toml::node* ssh = table.get("ssh")) {
        if (!ssh->is_table()) {
            top.fail(*ssh, "\"ssh\" is a table");
        }
        Section section(path, *ssh->as_table());
        section.texts("command", fleet.ssh);
        section.end();
        if (fleet.ssh.empty()) {
            section.fail("\"command\" is empty");
        }
    }
    readKinds(fleet, path, table, usual);
    return fleet;
}

}  // namespace lab
