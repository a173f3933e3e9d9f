#include "machine/noise.h"

#include <filesystem>
#include <sstream>

#include "machine/facts.h"

namespace lab {

namespace {

constexpr double StealShare = 0.01;
constexpr int QuietInARow = 3;

std::string word(const std::string& path) {
    std::istringstream text(fileContent(path));
    std::string first;
    text >> first;
    return first;
}

bool onBattery(const std::string& root) {
    std::error_code failed;
    for (const auto& supply : std::filesystem::directory_iterator(root + "/sys/class/power_supply", failed)) {
        if (word(supply.path() / "type") == "Battery" && word(supply.path() / "status") == "Discharging") {
            return true;
        }
    }
    return false;
}

std::string percent(double share) {
    std::ostringstream text;
    text.precision(share < 0.1 ? 2 : 3);
    text << 100.0 * share << "%";
    return text.str();
}

}  // namespace

NoiseReading readNoise(int core, const std::string& root) {
    NoiseReading reading;
    std::istringstream(fileContent(root + "/proc/loadavg")) >> reading.load;
    std::istringstream stat(fileContent(root + "/proc/stat"));
    std::string name;
    stat >> name;
    // user, nice, system, idle, iowait, irq, softirq, steal
    for (int column = 0; column < 8; ++column) {
        double ticks = 0.0;
        if (stat >> ticks) {
            reading.totalTicks += ticks;
            reading.stealTicks = column == 7 ? ticks : 0.0;
        }
    }
    reading.governor =
        word(root + "/sys/devices/system/cpu/cpu" + std::to_string(core) + "/cpufreq/scaling_governor");
    reading.battery = onBattery(root);
    return reading;
}

double NoiseWatch::steal(const NoiseReading& now) const {
    const double total = now.totalTicks - m_last.totalTicks;
    return total > 0.0 ? (now.stealTicks - m_last.stealTicks) / total : 0.0;
}

std::vector<std::string> NoiseWatch::warnings(const NoiseReading& now, double busyness, int cores) {
    std::vector<std::string> fresh;
    const auto say = [&](const char* kind, bool holds, const std::string& text) {
        if (holds && m_said.insert(kind).second) {
            fresh.push_back(text);
        }
    };
    const double stolen = steal(now);
    m_last = now;
    say("busy", busyness > BusyCanary,
        "the core or its sibling is busy: a fixed piece of work takes " + percent(busyness - 1.0) +
            " longer");
    say("steal", stolen > StealShare, "the host takes " + percent(stolen) + " of the time away");
    std::ostringstream load;
    load << now.load;
    say("load", now.load > 0.75 * cores,
        "other processes want the processors: load " + load.str() + " on " + std::to_string(cores));
    say("governor", !now.governor.empty() && now.governor != "performance",
        "the clock rate follows the load: governor " + now.governor + ", \"performance\" keeps it");
    say("battery", now.battery, "the machine runs on its battery");
    return fresh;
}

bool waitForQuiet(const std::function<double()>& busyness, const std::function<double()>& pause,
                  double seconds) {
    int quiet = 0;
    for (double waited = 0.0;;) {
        quiet = busyness() <= BusyCanary ? quiet + 1 : 0;
        if (quiet == QuietInARow) {
            return true;
        }
        const double passed = pause();
        waited += passed;
        if (passed < 0.0 || waited >= seconds) {
            return false;
        }
    }
}

}  // namespace lab
