#include "fleet/slurm.h"

#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "fleet/program.h"
#include "fleet/script.h"
#include "store/store.h"
#include "turns/child.h"

namespace lab {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view ofFeatures =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-+:=";

std::vector<std::string> split(const std::string& text, char at) {
    std::vector<std::string> parts;
    std::istringstream all(text);
    for (std::string part; std::getline(all, part, at);) {
        parts.push_back(part);
    }
    return parts;
}

/// The output without its line end; std::runtime_error with it if the program fails.
std::string asked(const std::vector<std::string>& words) {
    ProgramEnd end = runProgram({.words = words});
    while (!end.output.empty() && end.output.back() == '\n') {
        end.output.pop_back();
    }
    if (end.status != 0) {
        throw std::runtime_error(fmt::format(
            "{}: {}", words.front(), end.output.empty() ? fmt::format("status {}", end.status) : end.output));
    }
    return end.output;
}

bool isJudged(const std::string& constraint) {
    return constraint.find_first_not_of(std::string(ofFeatures) + "&|") == std::string::npos;
}

bool meets(const Node& node, const std::string& constraint) {
    bool all = true;
    char join = '&';
    for (std::size_t start = 0; start <= constraint.size();) {
        const std::size_t end = std::min(constraint.find_first_of("&|", start), constraint.size());
        const std::string feature = constraint.substr(start, end - start);
        const bool has =
            std::find(node.features.begin(), node.features.end(), feature) != node.features.end();
        all = join == '&' ? all && has : all || has;
        join = end < constraint.size() ? constraint[end] : '&';
        start = end + 1;
    }
    return all;
}

bool isOf(const Node& node, const Kind& kind) {
    const std::string partition =
        node.partition.ends_with("*") ? node.partition.substr(0, node.partition.size() - 1) : node.partition;
    return (kind.wishes.partition.empty() || kind.wishes.partition == partition) &&
           (kind.node.empty() || kind.node == node.name) &&
           (kind.constraint.empty() || !isJudged(kind.constraint) || meets(node, kind.constraint));
}

std::string describe(const Kind& kind) {
    std::string text = !kind.node.empty()         ? "node " + kind.node
                       : !kind.constraint.empty() ? "a node with " + kind.constraint
                                                  : "a node";
    return text + (kind.wishes.partition.empty() ? "" : " in partition " + kind.wishes.partition);
}

void writeScript(const std::string& path, const std::string& text) {
    std::ofstream file(path + ".part", std::ios::binary);
    if (!(file << text) || !file.flush()) {
        throw std::runtime_error(path + ": can't be written");
    }
    file.close();
    std::filesystem::rename(path + ".part", path);
}

bool isFinished(const std::string& store) {
    try {
        return Store::open(store, false).setting("finished") == "yes";
    } catch (const std::runtime_error&) {
        return false;  // none yet, or one that its session has just begun
    }
}

/// The jobs of a run: those of the kinds, and after them the one that joins.
class Jobs {
  public:
    Jobs(const FleetRun& run, const Say& say) : m_run(run), m_say(say) {}
    Jobs(const Jobs&) = delete;
    Jobs& operator=(const Jobs&) = delete;

    /// Those of an earlier call, if they are there still.
    bool recall() {
        std::ifstream file(listPath());
        for (std::string job; std::getline(file, job);) {
            m_jobs.push_back(job);
        }
        if (!m_jobs.empty() && areQueued()) {
            return true;
        }
        m_jobs.clear();
        return false;
    }

    void submit(const FleetFile& fleet, const std::vector<const Kind*>& kinds) {
        try {
            for (const Kind* kind : kinds) {
                const std::string path = m_run.folder + "/" + kind->name + ".sh";
                writeScript(path, arrayScript(fleet, m_run, *kind));
                add({"sbatch", "--parsable", path});
                m_say(fmt::format("{}: {} session{} as job {}", kind->name, kind->sessions,
                                  kind->sessions == 1 ? "" : "s", m_jobs.back()));
            }
            std::string all = "--dependency=afterany";
            for (const std::string& job : m_jobs) {
                all += ":" + job;
            }
            const std::string path = m_run.folder + "/merge.sh";
            writeScript(path, mergeScript(fleet, m_run));
            add({"sbatch", "--parsable", all, path});
        } catch (...) {
            cancel();
            throw;
        }
        std::string lines;
        for (const std::string& job : m_jobs) {
            lines += job + "\n";
        }
        writeScript(listPath(), lines);
    }

    /// Until all have ended. The one that joins may come before a session that a lost node has put back.
    void wait() const {
        const Clock::time_point start = Clock::now();
        std::string said;
        while (areQueued()) {
            const std::string states = statesText();
            if (states != said) {
                m_say(states);
                said = states;
            }
            const double spent = std::chrono::duration<double>(Clock::now() - start).count();
            const Clock::time_point next =
                Clock::now() +
                std::chrono::milliseconds(static_cast<int>(1000 * std::clamp(spent / 20, 1.0, 15.0)));
            while (Clock::now() < next) {
                throwIfInterrupted();
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        }
    }

  private:
    std::string listPath() const { return m_run.folder + "/jobs"; }

    void add(const std::vector<std::string>& words) {
        const std::string answer = asked(words);
        // on a federation the cluster's name stands behind
        m_jobs.push_back(split(answer.substr(answer.rfind('\n') + 1), ';').front());
    }

    void cancel() const {
        for (const std::string& job : m_jobs) {
            runProgram({.words = {"scancel", job}});
        }
    }

    std::string list() const {
        std::string list;
        for (const std::string& job : m_jobs) {
            list += (list.empty() ? "" : ",") + job;
        }
        return list;
    }

    /// Whether one of them is. A controller that does not answer has not forgotten them.
    bool areQueued() const {
        const ProgramEnd end =
            runProgram({.words = {"squeue", "--noheader", "--jobs=" + list(), "--format=%T"}});
        if (end.status != 0) {
            return end.output.find("Invalid job id") == std::string::npos;
        }
        return end.output.find_first_not_of(" \n") != std::string::npos;
    }

    /// "jobs: 3 PENDING, 2 RUNNING".
    std::string statesText() const {
        const ProgramEnd end =
            runProgram({.words = {"squeue", "--noheader", "--array", "--jobs=" + list(), "--format=%T"}});
        std::map<std::string, int> states;
        for (const std::string& state : split(end.status == 0 ? end.output : "", '\n')) {
            ++states[state];
        }
        std::string text = "jobs:";
        for (const auto& [state, number] : states) {
            text += fmt::format("{} {} {}", text.back() == ':' ? "" : ",", number, state);
        }
        return text;
    }

    const FleetRun& m_run;
    const Say& m_say;
    std::vector<std::string> m_jobs;
};

}  // namespace

std::vector<Node> nodesIn(const std::string& listing) {
    std::vector<Node> nodes;
    for (const std::string& line : split(listing, '\n')) {
        const std::vector<std::string> parts = split(line, '|');
        if (parts.size() == 3) {
            nodes.push_back({parts[0], split(parts[1], ','), parts[2]});
        }
    }
    return nodes;
}

std::vector<std::string> kindsOfNobody(const std::vector<Kind>& kinds, const std::vector<Node>& nodes) {
    std::vector<std::string> texts;
    for (const Kind& kind : kinds) {
        if (std::none_of(nodes.begin(), nodes.end(), [&](const Node& node) { return isOf(node, kind); })) {
            texts.push_back(fmt::format("kind {}: the cluster has not {}", kind.name, describe(kind)));
        }
    }
    return texts;
}

std::vector<Node> clusterNodes() {
    return nodesIn(asked({"sinfo", "--noheader", "--Node", "--format=%N|%f|%R"}));
}

void runJobs(const FleetFile& fleet, const FleetRun& run, bool waiting, const Say& say) {
    Jobs jobs(run, say);
    if (jobs.recall()) {
        say("the jobs of this run are queued already");
    } else {
        std::vector<const Kind*> kinds;
        for (const Kind& kind : fleet.kinds) {
            bool all = true;
            for (int session = 1; session <= kind.sessions; ++session) {
                all = all && isFinished(run.storeOf(kind, session));
            }
            if (!all) {
                kinds.push_back(&kind);
            }
        }
        if (kinds.empty() && std::filesystem::exists(run.mergedStore())) {
            return;
        }
        jobs.submit(fleet, kinds);
    }
    if (waiting) {
        jobs.wait();
    }
}

}  // namespace lab
