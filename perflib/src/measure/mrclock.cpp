#include "measure/mrclock.h"

#include <climits>
#include <cstdlib>

#include "measure/mrtickrate.h"

namespace {

/// Known clock rates in MHz.
constexpr int tamarin_mhz[] = {60,   66,   75,   90,   100,  120,  133,  150,  166,  185,  200,  220,  240,
                               266,  300,  333,  400,  450,  500,  530,  550,  600,  800,  1000, 1400, 1700,
                               1800, 1900, 2000, 2200, 2260, 2400, 2500, 2530, 2600, 2660, 2800, 3060};
constexpr int FarthestRate = 1000;
constexpr double RateTolerance = 0.03;

/// What an earlier process measured, by METRIG_MHZ in the environment; 0 if that is not set or no rate.
int givenMHz() {
    const char* text = std::getenv("METRIG_MHZ");
    const long value = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
    return value > 0 && value <= INT_MAX ? static_cast<int>(value) : 0;
}

}  // namespace

int mrCpuTicker::m_freqMHz = 0;

mrString mrDate::text(std::time_t moment) {
    const char* line = std::ctime(&moment);
    mrString text = line != nullptr ? line : "";
    const int end = text.find("\n", 0);
    return end == mrString::npos ? text : text.substr(0, end);
}

int mrCpuTicker::nominalFreq(int measuredMHz) {
    int best = FarthestRate;
    int rate = measuredMHz;
    for (const int known : tamarin_mhz) {
        const int distance = std::abs(known - measuredMHz);
        if (distance < best) {
            best = distance;
            rate = known;
        }
    }
    return measuredMHz > 0 && static_cast<double>(best) / measuredMHz < RateTolerance ? rate : measuredMHz;
}

int mrCpuTicker::getFreq() {
    if (m_freqMHz == 0) {
        m_freqMHz = givenMHz();
    }
    if (m_freqMHz == 0) {
        m_freqMHz = nominalFreq(mrMeasureMHz(mrSystemClocks));
    }
    return m_freqMHz;
}
