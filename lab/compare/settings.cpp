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

bool hasSetting(const NamedTexts& texts, const std::string& name) {
    return std::any_of(texts.begin(), texts.end(), [&](const auto& known) { return known.first == name; });
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

NamedTexts runSettingTexts(const RunSettings& settings) {
    return {{"time", exact(settings.seconds)},
            {"core", std::to_string(settings.core)},
            {"seed", std::to_string(settings.seed)},
            {"patience", exact(settings.patience)},
            {"wait", settings.wait ? "yes" : "no"},
            {"epochs", std::to_string(settings.shape.epochs)},
            {"turn", exact(settings.shape.microseconds)},
            {"blocks", std::to_string(settings.shape.blocks)}};
}

NamedTexts settingTexts(const Settings& settings) {
    NamedTexts texts = runSettingTexts(settings);
    texts.emplace_back("margin", exact(settings.margin));
    texts.emplace_back("fewest pairs", std::to_string(settings.fewestPairs));
    texts.emplace_back("most pairs", std::to_string(settings.mostPairs));
    texts.emplace_back("family", exact(settings.family));
    texts.emplace_back("machine kind", settings.kind);
    return texts;
}

const std::string& settingText(const NamedTexts& texts, const std::string& name) {
    for (const auto& [known, value] : texts) {
        if (known == name) {
            return value;
        }
    }
    throw std::invalid_argument("the store has no setting \"" + name + "\"");
}

int settingNumber(const NamedTexts& texts, const std::string& name) {
    return wholeNumber(settingText(texts, name));
}

void readRunSettings(const NamedTexts& texts, RunSettings& settings) {
    const auto real = [&](const char* name) { return numberAndUnit(settingText(texts, name)).first; };
    settings.seconds = real("time");
    settings.core = settingNumber(texts, "core");
    settings.seed = std::stoull(settingText(texts, "seed"));
    settings.patience = real("patience");
    settings.wait = settingText(texts, "wait") == "yes";
    settings.shape.epochs = settingNumber(texts, "epochs");
    settings.shape.microseconds = real("turn");
    settings.shape.blocks = settingNumber(texts, "blocks");
}

Settings settingsFrom(const StoredHead& head) {
    Settings settings;
    readRunSettings(head.settings, settings);
    settings.folders = {head.sides[0].folder, head.sides[1].folder};
    settings.margin = numberAndUnit(settingText(head.settings, "margin")).first;
    settings.fewestPairs = settingNumber(head.settings, "fewest pairs");
    settings.mostPairs = settingNumber(head.settings, "most pairs");
    if (hasSetting(head.settings, "family")) {  // stores of version 1.0 have none of these
        settings.family = numberAndUnit(settingText(head.settings, "family")).first;
        settings.kind = settingText(head.settings, "machine kind");
    }
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
