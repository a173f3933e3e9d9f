#pragma once

/// What the user asks of a comparison, and of any run that takes turns.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "store/store.h"
#include "turns/walk.h"

namespace lab {

/// Of any run.
struct RunSettings {
    std::vector<std::string> keys;  ///< of all instruments
    std::string instrument;         ///< path of the program; empty: the one that is built
    double seconds = 600.0;         ///< the whole may take
    int core = -1;                  ///< -1: the quietest
    std::uint64_t seed = 0;
    double patience = 10.0;  ///< seconds for an answer
    bool wait = true;        ///< for quiet
    TurnShape shape;
};

/// Of a comparison.
struct Settings : RunSettings {
    std::array<std::string, 2> folders;                ///< of the shared objects, old and new
    std::array<std::vector<std::string>, 2> sideKeys;  ///< of one of the instruments
    double margin = 0.01;
    int fewestPairs = 10;
    int mostPairs = 80;
    double family = 0.01;  ///< probability of a false "slower" or "faster" anywhere, at most
    std::string kind;      ///< of machine that the comparison speaks for; empty: its processor

    /// The looks between the fewest pairs and the most.
    std::vector<int> looks() const;
};

/// What resuming needs of them, for the store; the sides are kept there already.
NamedTexts settingTexts(const Settings& settings);
Settings settingsFrom(const StoredHead& head);

/// The same of what any run has.
NamedTexts runSettingTexts(const RunSettings& settings);
void readRunSettings(const NamedTexts& texts, RunSettings& settings);

/// The value of a setting in the store; std::invalid_argument if it is not there, or is no number.
const std::string& settingText(const NamedTexts& texts, const std::string& name);
int settingNumber(const NamedTexts& texts, const std::string& name);

/// "1%", "0.5%" or "0.01"; std::invalid_argument for any other text, as with those below.
double parseShare(const std::string& text);
/// Seconds of "90", "90s", "10m", "2h", "50us", "5ms".
double parseSeconds(const std::string& text);
/// "8:40" or "16".
std::array<int, 2> parsePairs(const std::string& text);
/// The keys of one option: "-TSSE2 -j5" are two, as a key begins with "-" after a blank.
std::vector<std::string> parseKeys(const std::string& text);

}  // namespace lab
