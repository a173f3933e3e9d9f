/// Writes a store as a comparison would have left it, with pairs that are made up: the same for the same
/// arguments on every machine.
///   lab_made_store STORE [POINTS [PAIRS]]      456 points; each decided, or with so many pairs whatever was
///   decided
/// Of every ten functions the first is 30% slower, the second 25% faster, the third hangs on the place of its
/// code, the fourth is noisy, and in the fifth the new build dies. Names, keys and paths hold what would run
/// if a page took it for markup.

#include <cmath>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "compare/evidence.h"
#include "compare/settings.h"
#include "machine/random.h"
#include "store/store.h"

namespace lab {
namespace {

constexpr const char* markup = "</script><img src=x onerror=alert(1)>";
constexpr int epochs = 5;
constexpr int kinds = 10;
enum Kind { slower, faster, placed, noisy, dying };

double uniform(Random& random) { return static_cast<double>(random.next() >> 11) * 0x1p-53; }

StoredHead headOf(int points) {
    StoredHead head;
    Settings settings;
    settings.core = 1;
    settings.seed = 7;
    head.settings = settingTexts(settings);
    head.settings.emplace_back("mhz", "2600");
    head.settings.emplace_back("identical", "no");
    head.machine = {{"processor", "made up"}, {"kernel", "none"}, {"siblings", "0-1"}, {"load", "1.5"}};
    for (std::size_t side = 0; side < 2; ++side) {
        StoredSide& its = head.sides[side];
        its.name = std::string(side == 0 ? "old" : "new") + "/" + markup;
        its.library = std::string("library \"of nothing\" ") + markup;
        its.keys = {"-TSSE2", std::string("-d") + markup};
        its.objects = {{"libzylch.so.10", its.name + "/libzylch.so.10", "", std::string(64, 'a'), "b1", 64}};
    }
    const int lengths[] = {32, 128, 512, 2048, 8192, 32768};
    for (int i = 0; i < points; ++i) {
        const int function = i / 12;
        const int place = i % 12;
        NamedTexts parameters{{"VectorLength", std::to_string(lengths[place % 6])}};
        if (function % 2 == 1) {
            parameters.emplace_back("lenFind", place < 6 ? "8" : markup);
        } else if (place >= 6) {
            parameters[0].second = std::to_string(3 * lengths[place % 6]);
        }
        head.points.push_back({"zylsMade" + std::to_string(function) + "_8u",
                               parameters,
                               "e",
                               std::stod(parameters[0].second),
                               true,
                               i % 100 != 99,
                               {}});
    }
    head.points[0].marks = {"same machine code"};
    return head;
}

/// What makes a pair of processes slow: stretches of a busy machine.
double busyness(int pair) { return pair % 9 == 5 ? 1.7 : 1.0; }

StoredVisit visitOf(int point, int pair, bool fresh, double seconds) {
    const int kind = point / 12 % kinds;
    Random random{7, static_cast<std::uint64_t>(point), static_cast<std::uint64_t>(pair)};
    StoredVisit visit{point, fresh, {}, {}};
    const double place = kind == placed && random.coin() ? 1.06 : 1.0;
    const double ratio = kind == slower ? 1.3 : kind == faster ? 0.75 : place;
    const double clocks = 20 + 7 * (point % 12);
    for (int epoch = 0; epoch < epochs; ++epoch) {
        for (const Side side : {Side::older, Side::newer}) {
            const double scatter = kind == noisy ? 0.2 : 0.003;
            const double factor = busyness(pair) * (side == Side::newer ? ratio : 1.0);
            const auto ticks = [&] {
                return static_cast<std::int64_t>(1000 * clocks * factor * (1 + scatter * uniform(random)));
            };
            visit.turns.push_back({side, epoch, 1000, {ticks(), ticks()}, 40, 1000, seconds});
        }
    }
    return visit;
}

void fill(Store& store, const StoredHead& head, int pairs) {
    EvidenceTable evidence(head.points, planFor(head.points, Settings().looks()), Settings().margin);
    const std::array<Fate, 2> dead{Fate{}, Fate{0, "SIGSEGV"}};
    for (std::size_t i = 0; i < head.points.size(); ++i) {
        if (static_cast<int>(i) / 12 % kinds == dying) {
            evidence.setFate(head.points[i].function, dead);
            store.addFate(head.points[i].function, dead);
        }
    }
    double seconds = 0;
    for (int pair = 1; pair <= 130; ++pair) {
        evidence.decideAll();
        std::vector<StoredVisit> visits;
        for (std::size_t i = 0; i < head.points.size(); ++i) {
            const bool dies = evidence.fates(i) != std::array<Fate, 2>();
            if (evidence.isOpen(i) || (pair <= pairs && head.points[i].newer && !dies)) {
                seconds += 0.002 * busyness(pair);
                visits.push_back(visitOf(static_cast<int>(i), pair, evidence.wantsFresh(i), seconds));
                evidence.add(visits.back());
            }
        }
        if (visits.empty()) {
            break;
        }
        store.addVisits(pair, visits);
        store.addPair({pair, seconds, busyness(pair), 0.02, 1.5});
    }
    store.setDecisions(evidence.decisions());
    store.setSetting("spent", std::to_string(seconds));
    store.addWarning(std::string("the load is ") + markup);
    store.finish();
}

int run(int argc, char** argv) {
    const int points = argc > 2 ? std::stoi(argv[2]) : 456;
    const StoredHead head = headOf(points);
    Store store = Store::create(argv[1], head);
    fill(store, head, argc > 3 ? std::stoi(argv[3]) : 0);
    return 0;
}

}  // namespace
}  // namespace lab

int main(int argc, char** argv) {
    try {
        if (argc > 1) {
            return lab::run(argc, argv);
        }
    } catch (const std::exception& reason) {
        std::fprintf(stderr, "%s\n", reason.what());
        return 1;
    }
    std::fputs("use: lab_made_store STORE [POINTS [PAIRS]]\n", stderr);
    return 2;
}
