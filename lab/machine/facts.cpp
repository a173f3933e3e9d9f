#include "machine/facts.h"

#include <sched.h>
#include <sys/utsname.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace lab {

namespace {

std::string firstLine(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

/// The value of the first line "<name> : <value>"; empty without one.
std::string cpuinfoValue(const std::string& text, const std::string& name) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos && line.compare(0, name.size(), name) == 0 &&
            line.find_first_not_of(" \t", name.size()) == colon) {
            const std::size_t value = line.find_first_not_of(" \t", colon + 1);
            return value == std::string::npos ? "" : line.substr(value);
        }
    }
    return "";
}

std::string kernelName() {
    utsname names{};
    return uname(&names) == 0 ? std::string(names.sysname) + " " + names.release + " " + names.machine : "";
}

cpu_set_t setOf(const std::vector<int>& cores) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (const int core : cores) {
        CPU_SET(static_cast<std::size_t>(core), &set);
    }
    return set;
}

}  // namespace

std::string fileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Facts machineFacts(int core, const std::string& root) {
    const std::string cpuinfo = fileContent(root + "/proc/cpuinfo");
    const std::string cpu = root + "/sys/devices/system/cpu/cpu" + std::to_string(core);
    const bool isVirtual =
        (" " + cpuinfoValue(cpuinfo, "flags") + " ").find(" hypervisor ") != std::string::npos;
    const std::string product = firstLine(root + "/sys/class/dmi/id/product_name");
    const Facts all = {{"processor", cpuinfoValue(cpuinfo, "model name")},
                       {"microcode", cpuinfoValue(cpuinfo, "microcode")},
                       {"kernel", kernelName()},
                       {"hypervisor", isVirtual ? (product.empty() ? "unknown" : product) : ""},
                       {"core", std::to_string(core)},
                       {"siblings", firstLine(cpu + "/topology/thread_siblings_list")},
                       {"governor", firstLine(cpu + "/cpufreq/scaling_governor")},
                       {"load", firstLine(root + "/proc/loadavg")}};
    Facts known;
    for (const auto& fact : all) {
        if (!fact.second.empty()) {
            known.push_back(fact);
        }
    }
    return known;
}

std::vector<std::string> mappedFiles(pid_t process, const std::string& root) {
    std::vector<std::string> paths;
    std::ifstream maps(root + "/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        const std::size_t start = line.find('/');
        const std::string path = start == std::string::npos ? "" : line.substr(start);
        if (!path.empty() && std::find(paths.begin(), paths.end(), path) == paths.end()) {
            paths.push_back(path);
        }
    }
    return paths;
}

std::vector<std::string> mappedPaths(pid_t process, const std::vector<std::string>& names,
                                     const std::string& root) {
    std::vector<std::string> paths(names.size());
    for (const std::string& path : mappedFiles(process, root)) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string end = "/" + names[i];
            if (path.size() >= end.size() && path.compare(path.size() - end.size(), end.size(), end) == 0) {
                paths[i] = path;
            }
        }
    }
    return paths;
}

std::vector<int> allowedCores() {
    cpu_set_t set;
    CPU_ZERO(&set);
    std::vector<int> cores;
    if (sched_getaffinity(0, sizeof set, &set) == 0) {
        for (int core = 0; core < CPU_SETSIZE; ++core) {
            if (CPU_ISSET(static_cast<std::size_t>(core), &set)) {
                cores.push_back(core);
            }
        }
    }
    return cores;
}

bool bindToCore(int core) {
    const cpu_set_t set = setOf({core});
    return core >= 0 && core < CPU_SETSIZE && sched_setaffinity(0, sizeof set, &set) == 0;
}

void bindToCores(const std::vector<int>& cores) {
    const cpu_set_t set = setOf(cores);
    sched_setaffinity(0, sizeof set, &set);
}

}  // namespace lab
