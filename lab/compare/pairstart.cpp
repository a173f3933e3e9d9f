#include "compare/pairstart.h"

#include <algorithm>
#include <stdexcept>

#include "machine/facts.h"
#include "turns/copies.h"

namespace lab {

namespace {

constexpr std::uint64_t MostPadding = 4096;

std::vector<std::string> environmentOf(const StoredSide& side, const std::string& copies, int mhz) {
    // the original folder after the copy, for objects that the library itself asks for
    return {"LD_LIBRARY_PATH=" + copies + ":" + side.folder, "METRIG_MHZ=" + std::to_string(mhz)};
}

std::chrono::milliseconds patienceOf(const Settings& settings) {
    return std::chrono::milliseconds(static_cast<long long>(settings.patience * 1000.0));
}

/// What the keys and the environment of a side take on its stack.
std::size_t stackOf(const ChildStart& start) {
    std::size_t size = 0;
    for (const auto* texts : {&start.arguments, &start.environment}) {
        for (const std::string& text : *texts) {
            size += text.size() + 1 + sizeof(char*);
        }
    }
    return size;
}

}  // namespace

InstrumentPair startPair(const std::array<StoredSide, 2>& sides, int mhz, std::chrono::milliseconds patience,
                         Random random) {
    LibraryCopies copies({sides[0].folder, sides[1].folder}, random);
    std::array<ChildStart, 2> starts;
    std::size_t longest = 0;
    for (std::size_t i = 0; i < 2; ++i) {
        starts[i].program = sides[i].instrument;
        starts[i].arguments = {"-B"};
        starts[i].arguments.insert(starts[i].arguments.end(), sides[i].keys.begin(), sides[i].keys.end());
        starts[i].environment = environmentOf(sides[i], copies.folder(static_cast<int>(i)), mhz);
        longest = std::max(longest, stackOf(starts[i]));
    }
    const std::size_t padding = random.below(MostPadding);
    InstrumentPair pair;
    const std::size_t first = random.coin() ? 0 : 1;
    for (const std::size_t i : {first, 1 - first}) {
        const std::size_t own = padding + longest - stackOf(starts[i]);
        starts[i].environment.push_back("METRIG_PADDING=" + std::string(own, '.'));
        pair.side[i] = std::make_unique<Instrument>(starts[i], patience);
        pair.mapped[i] = mappedPaths(pair.side[i]->process(), libraryObjects);
        for (std::size_t object = 0; object < libraryObjects.size(); ++object) {
            const std::string& path = pair.mapped[i][object];
            if (path != copies.folder(static_cast<int>(i)) + "/" + libraryObjects[object]) {
                throw std::runtime_error(sides[i].instrument + " does not use " + libraryObjects[object] +
                                         " of " + sides[i].folder + " but " + (path.empty() ? "none" : path));
            }
        }
    }
    return pair;
}

InstrumentPair startPairSurely(const std::array<StoredSide, 2>& sides, int mhz, const Settings& settings,
                               int pair, int start) {
    for (int chance = 1;; ++chance) {
        try {
            return startPair(sides, mhz, patienceOf(settings),
                             Random{settings.seed, static_cast<std::uint64_t>(pair),
                                    static_cast<std::uint64_t>(start + chance)});
        } catch (const std::runtime_error&) {
            if (chance == ChancesToStart) {
                throw;
            }
        }
    }
}

}  // namespace lab
