#include "machine/canary.h"

#include <x86intrin.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>

#include "machine/facts.h"

namespace lab {

namespace {

constexpr std::size_t PiecesLooked = 31;
constexpr int CanaryRounds = 4000;

/// Four chains that depend on nothing but themselves, so that the core is full and a busy sibling is felt.
unsigned long long ticksOfPiece() {
    unsigned a = 1;
    unsigned b = 2;
    unsigned c = 3;
    unsigned d = 4;
    _mm_lfence();
    const unsigned long long start = __rdtsc();
    for (int i = 0; i < CanaryRounds; ++i) {
        asm volatile(
            "add $1, %0\n\tadd $3, %1\n\tadd $5, %2\n\tadd $7, %3\n\t"
            "xor %1, %0\n\txor %2, %1\n\txor %3, %2\n\txor %0, %3"
            : "+r"(a), "+r"(b), "+r"(c), "+r"(d)
            :
            : "cc");
    }
    _mm_lfence();
    return __rdtsc() - start;
}

std::array<unsigned long long, PiecesLooked> sortedPieces() {
    std::array<unsigned long long, PiecesLooked> pieces{};
    std::generate(pieces.begin(), pieces.end(), ticksOfPiece);
    std::sort(pieces.begin(), pieces.end());
    return pieces;
}

}  // namespace

int tickMHz() {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    const unsigned long long first = __rdtsc();
    Clock::time_point now;
    do {
        now = Clock::now();
    } while (now - start < std::chrono::milliseconds(100));
    const unsigned long long ticks = __rdtsc() - first;
    const double microseconds = std::chrono::duration<double, std::micro>(now - start).count();
    return static_cast<int>(std::lround(static_cast<double>(ticks) / microseconds));
}

double Canary::busyness() {
    const auto pieces = sortedPieces();
    m_least = std::min(m_least, pieces.front());
    return static_cast<double>(pieces[PiecesLooked / 2]) / static_cast<double>(m_least);
}

int quietestCore(const std::vector<int>& cores) {
    int best = -1;
    unsigned long long least = ~0ULL;
    for (const int core : cores) {
        if (bindToCore(core)) {
            sortedPieces();  // the core wakes up
            const unsigned long long median = sortedPieces()[PiecesLooked / 2];
            if (median < least) {
                least = median;
                best = core;
            }
        }
    }
    if (best >= 0) {
        bindToCore(best);
    }
    return best;
}

}  // namespace lab
