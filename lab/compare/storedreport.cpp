#include "compare/storedreport.h"

#include <algorithm>
#include <optional>

#include "compare/evidence.h"
#include "compare/settings.h"
#include "verdict/states.h"

namespace lab {

namespace {

std::string textOf(const NamedTexts& texts, const std::string& name) {
    const auto found =
        std::find_if(texts.begin(), texts.end(), [&](const auto& known) { return known.first == name; });
    return found == texts.end() ? "" : found->second;
}

}  // namespace

Build buildOf(const StoredSide& side) {
    Build build;
    build.name = side.name;
    build.library = side.library;
    for (const std::string& key : side.keys) {
        build.keys += (build.keys.empty() ? "" : " ") + key;
        if (key.starts_with("-T")) {
            build.mask = key.substr(2);
        }
    }
    for (const StoredObject& object : side.objects) {
        build.objects.push_back({object.path, object.sha256, object.buildId});
    }
    return build;
}

Machine machineOf(const StoredHead& head, const std::vector<StoredPair>& pairs) {
    Machine machine;
    machine.processor = textOf(head.machine, "processor");
    machine.kernel = textOf(head.machine, "kernel");
    machine.hypervisor = textOf(head.machine, "hypervisor");
    machine.governor = textOf(head.machine, "governor");
    machine.siblings = textOf(head.machine, "siblings");
    machine.bits = head.sides[0].objects.empty() ? 0 : head.sides[0].objects.front().bits;
    machine.mhz = std::atoi(textOf(head.settings, "mhz").c_str());
    machine.core = std::atoi(textOf(head.settings, "core").c_str());
    machine.load = std::atof(textOf(head.machine, "load").c_str());
    for (const StoredPair& pair : pairs) {
        machine.steal += pair.steal / static_cast<double>(pairs.size());
    }
    return machine;
}

namespace {

std::string nameOf(const StoredPoint& point) {
    std::string name = point.function;
    for (const auto& [parameter, value] : point.parameters) {
        name.append(" ").append(parameter).append("=").append(value);
    }
    return name;
}

}  // namespace

Report reportOf(Store& store) {
    const StoredHead head = store.head();
    const Settings settings = settingsFrom(head);
    EvidenceTable evidence(head.points, planFor(head.points, settings.looks(), settings.family),
                           settings.margin);
    store.eachVisit([&](int, StoredVisit&& visit) { evidence.add(visit); });
    evidence.decideAll();
    for (const auto& [function, fates] : store.fates()) {
        evidence.setFate(function, fates);
    }
    evidence.decideAll();

    Report report;
    report.older = buildOf(head.sides[0]);
    report.newer = buildOf(head.sides[1]);
    report.machine = machineOf(head, store.pairs());
    report.margin = settings.margin;
    report.seed = settings.seed;
    report.family = settings.family;
    report.seconds = std::atof(store.setting("spent").c_str());
    report.finished = store.setting("finished") == "yes" && store.setting("ended").empty();
    report.identical = textOf(head.settings, "identical") == "yes";
    report.warnings = store.warnings();
    for (std::size_t i = 0; i < head.points.size(); ++i) {
        const StoredPoint& stored = head.points[i];
        if (!stored.older || !stored.newer) {
            (stored.older ? report.onlyOlder : report.onlyNewer).push_back(nameOf(stored));
            continue;
        }
        const auto& fates = evidence.fates(i);
        Point point{stored.function,
                    stored.parameters,
                    stored.unit,
                    stored.divisor,
                    evidence.decisions()[i],
                    0.0,
                    0.0,
                    fates[0],
                    fates[1],
                    stored.marks};
        const std::vector<Pair> pairs = evidence.pairs(i);
        setClocks(point, pairs);
        if (const std::optional<Side> side = onlyFastSide(pairs)) {
            point.marks.emplace_back(*side == Side::older ? "fast state reached by old only"
                                                          : "fast state reached by new only");
        }
        report.points.push_back(std::move(point));
    }
    return report;
}

}  // namespace lab
