#include "fleet/hosts.h"

#include <fmt/core.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

#include "fleet/program.h"
#include "fleet/script.h"
#include "show/report.h"
#include "store/merged.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

bool isAnswer(int status) {
    return status == exitNothingSlower || status == exitSlower || status == exitUnsure || status == exitCrash;
}

/// A file of this process, gone with the object.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string path) : m_path(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code failed;
        fs::remove(m_path, failed);
    }
    const std::string& path() const { return m_path; }

  private:
    std::string m_path;
};

class Host {
  public:
    Host(const FleetFile& fleet, const FleetRun& run, const Kind& kind)
        : m_fleet(fleet), m_run(run), m_kind(kind), m_name(kind.host.empty() ? kind.node : kind.host) {}

    /// Files that the host does not have, links to them, and the script.
    void stage(const std::string& scratch) const {
        const std::string stock = quoted(m_run.stock);
        std::istringstream listing(asked(
            {.words = shell(fmt::format("mkdir -p {} && cd {} && ls", stock, stock)), .passErrors = true}));
        std::set<std::string> there;
        for (std::string name; std::getline(listing, name);) {
            there.insert(name);
        }
        std::string links = fmt::format("cd {} || exit 2\n", quoted(m_run.folder));
        std::set<std::string> folders{m_run.folder};
        for (const SentFile& file : m_run.files) {
            if (there.insert(file.sha256).second) {
                send(file);
            }
            folders.insert(fs::path(m_run.folder + "/" + file.target).parent_path());
            links +=
                fmt::format("ln -sfn {} {}\n", quoted(m_run.stock + "/" + file.sha256), quoted(file.target));
        }
        std::string all = "mkdir -p";
        for (const std::string& folder : folders) {
            all += " " + quoted(folder);
        }
        asked({.words = shell(all + "\n" + links), .passErrors = true});
        const TemporaryFile script(scratch + ".script");
        if (!(std::ofstream(script.path()) << hostScript(m_run, m_kind)).flush()) {
            throw std::runtime_error(script.path() + ": can't be written");
        }
        asked({.words = shell("cat > " + quoted(scriptPath())), .input = script.path(), .passErrors = true});
    }

    /// The status of metrig-lab there.
    int measure(int session) const {
        return runProgram({.words = shell(fmt::format("bash {} {}", quoted(scriptPath()), session)),
                           .holdInput = true,
                           .output = "/dev/null"})
            .status;
    }

    void fetch(int session, const std::string& target) const {
        asked({.words = shell("cat " + quoted(m_run.storeOf(m_kind, session))), .output = target});
    }

    const std::string& name() const { return m_name; }

  private:
    std::string scriptPath() const { return m_run.folder + "/" + m_kind.name + ".sh"; }

    std::vector<std::string> shell(const std::string& command) const {
        std::vector<std::string> words = m_fleet.ssh;
        words.push_back(m_name);
        words.push_back(command);
        return words;
    }

    std::string asked(const ProgramStart& start) const {
        const ProgramEnd end = runProgram(start);
        if (end.status != 0) {
            throw std::runtime_error(
                fmt::format("{}: {} ended with status {}", m_name, start.words.front(), end.status));
        }
        return end.output;
    }

    /// What comes over a line that breaks is not taken.
    void send(const SentFile& file) const {
        const std::string target = m_run.stock + "/" + file.sha256;
        const std::string part = quoted(target + ".part");
        asked({.words = shell(fmt::format("cat > {} && echo {}\"  \"{} | sha256sum --check --status && "
                                          "chmod 755 {} && mv {} {}",
                                          part, file.sha256, part, part, part, quoted(target))),
               .input = file.source,
               .passErrors = true});
    }

    const FleetFile& m_fleet;
    const FleetRun& m_run;
    const Kind& m_kind;
    std::string m_name;
};

}  // namespace

int runOnHosts(const FleetFile& fleet, const FleetRun& run, const std::string& output, const Say& say) {
    for (const Kind& kind : fleet.kinds) {
        if (kind.host.empty() && kind.node.empty()) {
            throw std::runtime_error("kind " + kind.name + " has no \"host\" to reach over ssh");
        }
    }
    const std::string scratch = fmt::format("{}.{}", output, run.identity);
    int measured = 0;
    for (const Kind& kind : fleet.kinds) {
        const Host host(fleet, run, kind);
        try {
            host.stage(scratch);
            for (int session = 1; session <= kind.sessions; ++session) {
                say(fmt::format("{}: session {} of {} on {}", kind.name, session, kind.sessions,
                                host.name()));
                const int status = host.measure(session);
                if (!isAnswer(status)) {
                    say(fmt::format("{}: session {} ended with status {}", kind.name, session, status));
                    continue;
                }
                const TemporaryFile store(scratch + ".fetched");
                host.fetch(session, store.path());
                mergeStores(output, {store.path()});
                ++measured;
            }
        } catch (const std::runtime_error& reason) {
            say(fmt::format("{}: left out: {}", kind.name, reason.what()));
        }
    }
    return measured;
}

}  // namespace lab
