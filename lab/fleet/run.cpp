#include "fleet/run.h"

#include <fmt/core.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <stdexcept>

#include "compare/sides.h"
#include "machine/facts.h"
#include "machine/sha256.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t IdentityLength = 16;

/// The last part of what the user called it, as reports name it.
std::string nameOf(const StoredSide& side) { return fs::path(side.folder).filename(); }

std::vector<SentFile> filesOf(const FleetFile& fleet, const FleetRun& run,
                              const std::array<StoredSide, 2>& sides) {
    std::vector<SentFile> files;
    const auto send = [&](const std::string& source, const std::string& target) {
        if (!fs::is_regular_file(source)) {
            throw std::runtime_error(source + ": no such file");
        }
        files.push_back({source, target, sha256(fileContent(source))});
    };
    send(fs::read_symlink("/proc/self/exe"), "metrig-lab");
    send(sides[0].instrument, "metrig");
    for (const StoredObject& object : sides[0].objects) {
        files.push_back({object.path, run.older + "/" + object.name, object.sha256});
    }
    for (const StoredObject& object : sides[1].objects) {
        files.push_back({object.path, run.newer + "/" + object.name, object.sha256});
    }
    for (const std::string& path : fleet.files) {
        send(path, "files/" + fs::path(path).filename().string());
    }
    std::set<std::string> targets;
    for (const SentFile& file : files) {
        if (!targets.insert(file.target).second) {
            throw std::runtime_error(file.source + ": a second file of that name");
        }
    }
    return files;
}

std::string identityOf(const FleetFile& fleet, const FleetOrder& order, const FleetRun& run) {
    std::string text = order.label + "\n";
    const auto add = [&](const std::vector<std::string>& words) {
        for (const std::string& word : words) {
            text += word + "\n";
        }
        text += "\n";
    };
    add(run.options);
    add(run.keys);
    for (const SentFile& file : run.files) {
        text += file.sha256 + " " + file.target + "\n";
    }
    for (const Kind& kind : fleet.kinds) {
        text += fmt::format("{} {} {}\n", kind.name, kind.sessions, kind.core);
        add(kind.keys);
    }
    return sha256(text).substr(0, IdentityLength);
}

void stageFile(const SentFile& file, const std::string& stock) {
    const std::string target = stock + "/" + file.sha256;
    if (fs::exists(target)) {
        return;
    }
    const std::string part = fmt::format("{}.{}", target, getpid());
    fs::copy_file(file.source, part, fs::copy_options::overwrite_existing);
    fs::permissions(part, fs::perms(0755));
    if (sha256(fileContent(part)) != file.sha256) {
        fs::remove(part);
        throw std::runtime_error(file.source + ": changed while it was copied, or " + stock + " is full");
    }
    fs::rename(part, target);
}

}  // namespace

std::string FleetRun::storeOf(const Kind& kind, int session) const {
    return fmt::format("{}/{}.{}.db", folder, kind.name, session);
}

double familyOfSession(const FleetFile& fleet, double family) { return family / fleet.sessions(); }

FleetRun planRun(const FleetFile& fleet, const FleetOrder& order, const std::array<StoredSide, 2>& sides) {
    if (isProgram(sides[0])) {
        throw std::runtime_error("a fleet compares folders of shared objects, " + sides[0].name +
                                 " is a program");
    }
    FleetRun run;
    run.older = "old/" + nameOf(sides[0]);
    run.newer = "new/" + nameOf(sides[1]);
    run.options = order.options;
    run.options.push_back(fmt::format("--family={}", familyOfSession(fleet, order.settings.family)));
    run.keys = order.settings.keys;
    run.files = filesOf(fleet, run, sides);
    run.identity = identityOf(fleet, order, run);
    run.folder = fleet.folder + "/" + run.identity;
    run.stock = fleet.folder + "/files";
    return run;
}

void stageRun(const FleetRun& run) {
    fs::create_directories(run.stock);
    for (const SentFile& file : run.files) {
        stageFile(file, run.stock);
        const fs::path target = run.folder + "/" + file.target;
        fs::create_directories(target.parent_path());
        if (!fs::exists(target)) {
            fs::remove(target);
            fs::create_symlink(run.stock + "/" + file.sha256, target);
        }
    }
}

}  // namespace lab
