#pragma once

/// The core that a run has, and how quiet it is there.

#include <functional>
#include <string>

#include "compare/settings.h"
#include "machine/canary.h"
#include "machine/noise.h"

namespace lab {

/// Binds this process, which sleeps while an instrument works, and those it starts to the core asked for, or
/// to the quietest one where that is negative. Returns it; std::runtime_error if the system refuses.
int takeCore(int asked);

/// Where the settings ask for it, waits for a quiet core, not for long, and says so by `note` when it does.
/// Interrupted as in turns/child.h.
void waitUntilQuiet(const RunSettings& settings, Canary& canary,
                    const std::function<void(const std::string&)>& note);

/// Looks around before each pair of processes, or each process.
class Surroundings {
  public:
    explicit Surroundings(int core) : m_core(core), m_noise(readNoise(core)) {}

    /// What is kept of pair `number`, its time aside. Hands to `warn` what was not said yet.
    StoredPair look(int number, const std::function<void(const std::string&)>& warn);

  private:
    int m_core;
    NoiseWatch m_noise;
    Canary m_canary;
};

}  // namespace lab
