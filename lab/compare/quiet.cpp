#include "compare/quiet.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include "machine/facts.h"
#include "turns/child.h"

namespace lab {

namespace {

constexpr double LongestWait = 10.0;

}  // namespace

int takeCore(int asked) {
    if (asked < 0) {
        return quietestCore(allowedCores());
    }
    if (!bindToCore(asked)) {
        throw std::runtime_error("processor " + std::to_string(asked) + " is not for this process");
    }
    return asked;
}

void waitUntilQuiet(const RunSettings& settings, Canary& canary,
                    const std::function<void(const std::string&)>& note) {
    if (!settings.wait) {
        return;
    }
    bool said = false;
    const auto pause = [&] {
        throwIfInterrupted();
        if (!said) {
            note("waits for quiet, at most 10 s (--no-wait)");
            said = true;
        }
        const std::chrono::milliseconds step(100);
        std::this_thread::sleep_for(step);
        return std::chrono::duration<double>(step).count();
    };
    waitForQuiet([&] { return canary.busyness(); }, pause, LongestWait);
}

StoredPair Surroundings::look(int number, const std::function<void(const std::string&)>& warn) {
    const NoiseReading now = readNoise(m_core);
    const StoredPair pair{number, 0.0, m_canary.busyness(), m_noise.steal(now), now.load};
    for (const std::string& text :
         m_noise.warnings(now, pair.busyness, static_cast<int>(std::thread::hardware_concurrency()))) {
        warn(text);
    }
    return pair;
}

}  // namespace lab
