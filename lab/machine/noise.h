#pragma once

/// What makes measurements noisy on this machine just now.

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace lab {

/// One reading of the system's own figures.
struct NoiseReading {
    double load = 0.0;        ///< processes that want a processor, mean of the last minute
    double stealTicks = 0.0;  ///< time that a host took away, all processors, since the start
    double totalTicks = 0.0;  ///< time of all processors since the start
    std::string governor;     ///< of the core
    bool battery = false;     ///< power comes from a battery
};

/// `root` stands before /proc and /sys.
NoiseReading readNoise(int core, const std::string& root = "");

/// Says each kind of noise once.
class NoiseWatch {
  public:
    explicit NoiseWatch(const NoiseReading& first) : m_last(first) {}

    /// The warnings that were not said yet, as sentences. `busyness` is the canary's, `cores` the number of
    /// processors.
    std::vector<std::string> warnings(const NoiseReading& now, double busyness, int cores);

    /// Share of time since the last call of warnings() that a host took away.
    double steal(const NoiseReading& now) const;

  private:
    NoiseReading m_last;
    std::set<std::string> m_said;
};

/// Canary that counts as busy.
constexpr double BusyCanary = 1.08;

/// Waits until `busyness` tells quiet, three times in a row, at most `seconds`; false if it never did.
/// `pause` waits a while and answers how many seconds that were, negative to give up.
bool waitForQuiet(const std::function<double()>& busyness, const std::function<double()>& pause,
                  double seconds);

}  // namespace lab
