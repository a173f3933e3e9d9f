#include "compare/settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "verdict/plan.h"

namespace lab {

namespace {

/// The number at the start of the text, and what stands after it.
std::pair<double, std::string> numberAndUnit(const std::string& text) {
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || !std::isfinite(value) || value < 0.0) {
        throw std::invalid_argument("\"" + text + "\" is no number");
    }
    return {value, std::string(stop, end)};
}

int wholeNumber(const std::string& text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        throw std::invalid_argument("\"" + text + "\" is no whole number");
    }
    return value;
}

/// As many digits as bring the same number back.
std::string exact(double value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return {buffer, end};
}

}  // namespace

std::vector<int> Settings::looks() const {
    std::vector<int> looks{fewestPairs};
    for (const int pairs : usualLooks) {
        if (pairs > fewestPairs && pairs < mostPairs) {
            looks.push_back(pairs);
        }
    }
    if (mostPairs > fewestPairs) {
        looks.push_back(mostPairs);
    }
    return looks;
}

NamedTexts settingTexts(const Settings& settings) {
    return {{"margin", exact(settings.margin)},
            {"time", exact(settings.seconds)},
            {"fewest pairs", std::to_string(settings.fewestPairs)},
            {"most pairs", std::to_string(settings.mostPairs)},
            {"core", std::to_string(settings.core)},
            {"seed", std::to_string(settings.seed)},
            {"patience", exact(settings.patience)},
            {"wait", settings.wait ? "yes" : "no"},
            {"family", exact(settings.family)},
            {"kind", settings.kind},
            {"epochs", std::to_string(settings.shape.epochs)},
            {"turn", exact(settings.shape.microseconds)},
            {"blocks", std::to_string(settings.shape.blocks)}};
}

Settings settingsFrom(const StoredHead& head) {
    const auto find = [&](const char* name) {
        return std::find_if(head.settings.begin(), head.settings.end(),
                            [&](const auto& known) { return known.first == name; });
    };
    const auto text = [&](const char* name) -> const std::string& {
        const auto found = find(name);
        if (found != head.settings.end()) {
            return found->second;
        }
        throw std::invalid_argument(std::string("the store has no setting \"") + name + "\"");
    };
    Settings settings;
    settings.folders = {head.sides[0].folder, head.sides[1].folder};
    settings.margin = numberAndUnit(text("margin")).first;
    settings.seconds = numberAndUnit(text("time")).first;
    settings.fewestPairs = wholeNumber(text("fewest pairs"));
    settings.mostPairs = wholeNumber(text("most pairs"));
    settings.core = wholeNumber(text("core"));
    settings.seed = std::stoull(text("seed"));
    settings.patience = numberAndUnit(text("patience")).first;
    settings.wait = text("wait") == "yes";
    if (find("family") != head.settings.end()) {  // stores of version 1.0 have none of these
        settings.family = numberAndUnit(text("family")).first;
        settings.kind = text("kind");
    }
    settings.shape.epochs = wholeNumber(text("epochs"));
    settings.shape.microseconds = numberAndUnit(text("turn")).first;
    settings.shape.blocks = wholeNumber(text("blocks"));
    return settings;
}

double parseShare(const std::string& text) {
    const auto [value, unit] = numberAndUnit(text);
    const double share = unit == "%" ? value / 100.0 : value;
    if ((!unit.empty() && unit != "%") || share <= 0.0 || share >= 1.0) {
        throw std::invalid_argument("\"" + text + "\" is no share: say 1% or 0.01");
    }
    return share;
}

double parseSeconds(const std::string& text) {
    const auto [value, unit] = numberAndUnit(text);
    constexpr std::pair<const char*, double> units[] = {{"", 1.0},     {"s", 1.0},   {"m", 60.0},
                                                        {"h", 3600.0}, {"ms", 1e-3}, {"us", 1e-6}};
    for (const auto& [name, seconds] : units) {
        if (unit == name && value > 0.0) {
            return value * seconds;
        }
    }
    throw std::invalid_argument("\"" + text + "\" is no time: say 90s or 10m");
}

std::array<int, 2> parsePairs(const std::string& text) {
    const std::size_t colon = text.find(':');
    const int fewest = wholeNumber(text.substr(0, colon));
    const int most = colon == std::string::npos ? fewest : wholeNumber(text.substr(colon + 1));
    if (fewest < 1 || most < fewest || most > 1000) {
        throw std::invalid_argument("\"" + text + "\" are no numbers of pairs: say 8:40, at most 1000");
    }
    return {fewest, most};
}

std::vector<std::string> parseKeys(const std::string& text) {
    std::vector<std::string> keys;
    for (std::size_t start = text.find_first_not_of(' '); start != std::string::npos;) {
        std::size_t end = start;
        do {
            end = text.find(' ', end + 1);
        } while (end != std::string::npos && text.compare(end, 2, " -") != 0);
        const std::string key = text.substr(start, end == std::string::npos ? end : end - start);
        keys.push_back(key.substr(0, key.find_last_not_of(' ') + 1));
        start = end == std::string::npos ? end : end + 1;
    }
    return keys;
}

}  // namespace lab
