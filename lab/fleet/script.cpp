#include "fleet/script.h"

#include <fmt/core.h>

#include <filesystem>
#include <set>

#include "fleet/program.h"

namespace lab {

namespace {

/// Lines "#SBATCH ...", of those whose value is not empty.
class Directives {
  public:
    Directives& add(const std::string& option) {
        m_text += "#SBATCH " + option + "\n";
        return *this;
    }
    Directives& add(const std::string& option, const std::string& value) {
        return value.empty() ? *this : add(fmt::format("{}=\"{}\"", option, value));
    }
    Directives& add(const JobWishes& wishes) {
        add("--partition", wishes.partition);
        for (const std::string& option : wishes.options) {
            add(option);
        }
        return *this;
    }
    const std::string& text() const { return m_text; }

  private:
    std::string m_text;
};

std::string words(const std::vector<std::string>& texts) {
    std::string line;
    for (const std::string& text : texts) {
        line += " " + quoted(text);
    }
    return line;
}

std::string head(const FleetRun& run, const Kind& kind, const char* number) {
    return fmt::format(
        "\nrun={}\nprograms=$run\nsession={}.{}\nstore=$run/$session.db\n"
        "mkdir -p \"$run/$session\" && cd \"$run/$session\" || exit 2\n",
        quoted(run.folder), kind.name, number);
}

/// Programs and libraries on the node's own disk, under the same paths when the job runs again.
std::string broadcast(const FleetRun& run) {
    std::string text = fmt::format(
        "\nprograms=/tmp/metrig-lab-{}-$session\ntrap 'rm -rf \"$programs\"' EXIT\n", run.identity);
    std::set<std::string> folders;
    std::string copies;
    for (const SentFile& file : run.files) {
        folders.insert(std::filesystem::path(file.target).parent_path());
        copies += fmt::format("sbcast --force --preserve {} \"$programs\"/{} || exit 2\n",
                              quoted(run.stock + "/" + file.sha256), quoted(file.target));
    }
    text += "mkdir -p \"$programs\"";
    for (const std::string& folder : folders) {
        text += folder.empty() ? "" : fmt::format(" \"$programs\"/{}", quoted(folder));
    }
    return text + " || exit 2\n" + copies;
}

/// The arguments of metrig-lab: a session that has begun goes on.
std::string arguments(const FleetRun& run, const Kind& kind) {
    std::string options = words(run.options) + " --kind=" + kind.name;
    if (kind.core >= 0) {
        options += fmt::format(" --core={}", kind.core);
    }
    std::string text;
    for (const SentFile& file : run.files) {
        if (file.target.starts_with("files/")) {
            text += fmt::format("ln -sf \"$programs\"/{} .\n", quoted(file.target));
        }
    }
    return text + fmt::format(
                      "lab=$programs/metrig-lab\n"
                      "\"$lab\" show \"$store\" > /dev/null 2>&1\n"
                      "if [ $? -ne 2 ]; then\n"
                      "    set -- resume \"$store\"\n"
                      "else\n"
                      "    set -- compare \"$programs\"/{} \"$programs\"/{} --output=\"$store\" \\\n"
                      "        --instrument=\"$programs/metrig\"{} \\\n"
                      "        --{}{}\n"
                      "fi\n\n",
                      quoted(run.older), quoted(run.newer), options, words(run.keys), words(kind.keys));
}

/// A signal ends the wait of bash, not the child.
constexpr const char* waiting = R"sh(trap 'kill -TERM "$child" 2> /dev/null' TERM HUP
wait "$child"
status=$?
while kill -0 "$child" 2> /dev/null; do
    wait "$child"
    status=$?
done
)sh";

constexpr const char* requeueing = R"sh(
# the limit of time: the job goes on in its next run, unless it was cancelled
if [ $status -eq 130 ] && [ "$(squeue --noheader --job="$SLURM_JOB_ID" --format=%T)" = RUNNING ]; then
    scontrol requeue "$SLURM_JOB_ID"
    exit
fi
case $status in 0 | 1 | 3 | 5) exit 0 ;; esac
exit $status
)sh";

}  // namespace

std::string arrayScript(const FleetFile& fleet, const FleetRun& run, const Kind& kind) {
    Directives directives;
    directives.add("--job-name=metrig-" + kind.name)
        .add(fmt::format("--array=1-{}", kind.sessions))
        .add("--nodelist", kind.node)
        .add("--constraint", kind.constraint)
        .add("--nodes=1 --ntasks=1 --exclusive")
        .add("--requeue --open-mode=append --signal=B:TERM@60")
        .add("--time", kind.wishes.timeLimit)
        .add("--cpu-freq", kind.wishes.cpuFrequency)
        .add("--chdir", run.folder)
        .add("--output", run.folder + "/" + kind.name + ".%a.log")
        .add(kind.wishes);
    return "#!/bin/bash\n" + directives.text() + head(run, kind, "$SLURM_ARRAY_TASK_ID") +
           (fleet.broadcast ? broadcast(run) : "") + arguments(run, kind) +
           "srun --ntasks=1 --cpus-per-task=\"$SLURM_CPUS_ON_NODE\" --cpu-bind=cores \"$lab\" \"$@\" "
           "&\nchild=$!\n" +
           waiting + requeueing;
}

std::string mergeScript(const FleetFile& fleet, const FleetRun& run) {
    Directives directives;
    directives.add("--job-name=metrig-merge")
        .add("--nodes=1 --ntasks=1 --requeue --open-mode=append")
        .add("--chdir", run.folder)
        .add("--output", run.folder + "/merge.log")
        .add(fleet.kinds.front().wishes);
    std::string sessions;
    for (const Kind& kind : fleet.kinds) {
        sessions += fmt::format(" {}.{{1..{}}}", kind.name, kind.sessions);
    }
    return "#!/bin/bash\n" + directives.text() +
           fmt::format(
               "\nrun={}\nstores=()\nfor session in{}; do\n"
               "    [ ! -s \"$run/$session.db\" ] || stores+=(\"$run/$session.db\")\ndone\n"
               "exec \"$run/metrig-lab\" merge --skip-others \"$run/merged.db\" \"${{stores[@]}}\"\n",
               quoted(run.folder), sessions);
}

std::string hostScript(const FleetRun& run, const Kind& kind) {
    return "#!/bin/bash\n" + head(run, kind, "$1") + arguments(run, kind) +
           "\"$lab\" \"$@\" < /dev/null &\nchild=$!\n"
           "# its input ends when who asked for it is gone\n"
           "{ read -r; kill -TERM \"$child\"; } <&0 > /dev/null 2>&1 &\nwatch=$!\n" +
           waiting + "kill \"$watch\" 2> /dev/null\nexit $status\n";
}

}  // namespace lab
